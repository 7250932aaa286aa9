// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/archive/contents.h"

#include "helpers/self-extractor/decoding/codergraph.h"
#include "helpers/self-extractor/decoding/lzmastream.h"

#include <cstring>

namespace sfx {

namespace {

// Compares names as the file system does.
Status sameName(const char16_t *name, std::size_t size, const Text &wanted, UpperCase upperCase,
                bool &same)
{
    same = false;
    if (size != wanted.size()) {
        return Status::Ok;
    }
    Array<char16_t> units;
    if (!units.allocate(2 * size)) {
        return Status::NoMemory;
    }
    std::memcpy(units.data(), name, size * sizeof(char16_t));
    std::memcpy(units.data() + size, wanted.data(), size * sizeof(char16_t));
    upperCase(units.data(), size);
    upperCase(units.data() + size, size);
    same = std::memcmp(units.data(), units.data() + size, size * sizeof(char16_t)) == 0;
    return Status::Ok;
}

Status checkCoderGraphs(const Archive &archive)
{
    Status status = Status::Ok;
    for (std::uint32_t i = 0; status == Status::Ok && i < archive.tables().db.NumFolders; ++i) {
        CoderGraph graph;
        status = archive.coderGraph(i, graph);
        if (status == Status::Ok) {
            status = checkCoderGraph(graph, maxDictionarySize);
        }
    }
    return status;
}

} // namespace

Status checkContents(Archive &archive, const Text &program, UpperCase upperCase,
                     std::uint64_t &totalBytes)
{
    const CSzArEx &tables = archive.tables();
    const std::uint32_t count = archive.entryCount();
    PathSet paths(upperCase);
    // The names lie one after the other; the last offset is the end of all.
    if (!paths.allocate(count, count != 0 ? tables.FileNameOffsets[count] : 0)) {
        return Status::NoMemory;
    }
    totalBytes = 0;
    bool programFound = false;
    for (std::uint32_t i = 0; i < count; ++i) {
        Entry entry;
        Status status = archive.entry(i, entry);
        bool same = false;
        if (status == Status::Ok && !entry.isFolder) {
            status = sameName(entry.path, entry.pathSize, program, upperCase, same);
        }
        if (status != Status::Ok) {
            return status;
        }
        programFound = programFound || same;
        paths.add(entry.path, entry.pathSize, entry.isFolder);
        totalBytes += entry.size;
        if (totalBytes < entry.size) {
            return Status::Damaged;
        }
    }
    const Status status = checkCoderGraphs(archive);
    if (status != Status::Ok) {
        return status;
    }
    if (paths.collides()) {
        return Status::UnsafeName;
    }
    return programFound ? Status::Ok : Status::ProgramMissing;
}

} // namespace sfx
