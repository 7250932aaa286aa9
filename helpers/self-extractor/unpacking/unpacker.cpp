// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/unpacking/unpacker.h"

#include "helpers/self-extractor/archive/shortname.h"

namespace sfx {

namespace {

// A folder or an empty file.
Status makeEmpty(const Entry &entry, UnpackSink &sink)
{
    if (entry.isFolder) {
        return sink.makeFolder(entry);
    }
    const Status status = sink.beginFile(entry);
    return status == Status::Ok ? sink.endFile(entry) : status;
}

// Entries with names like LONGFI~1.TXT, before others can get this name as their short name. Files
// are empty at first and get their attributes later: a read-only file could not be opened again.
Status makeShortNames(Archive &archive, UnpackSink &sink, const UnpackLimits &limits)
{
    Status status = Status::Ok;
    for (std::uint32_t i = 0; status == Status::Ok && i < archive.entryCount(); ++i) {
        Entry entry;
        status = archive.entry(i, entry);
        if (status != Status::Ok || !limits.takes(i)
            || !couldBeShortName(entry.path, entry.pathSize)) {
            continue;
        }
        if (entry.size != 0) {
            entry.size = 0;
            entry.attributes = 0;
            entry.hasModified = false;
        }
        status = makeEmpty(entry, sink);
    }
    return status;
}

// The other folders, and files without content. Files with content must have a CRC.
Status makeEmptyEntries(Archive &archive, UnpackSink &sink, const UnpackLimits &limits)
{
    const CSzArEx &tables = archive.tables();
    Status status = makeShortNames(archive, sink, limits);
    for (std::uint32_t i = 0; status == Status::Ok && i < archive.entryCount(); ++i) {
        Entry entry;
        status = archive.entry(i, entry);
        if (status != Status::Ok) {
            return status;
        }
        if (entry.isFolder || entry.size == 0) {
            if (limits.takes(i) && !couldBeShortName(entry.path, entry.pathSize)) {
                status = makeEmpty(entry, sink);
            }
        } else if (!SzBitWithVals_Check(&tables.CRCs, i)
                   || tables.FileToFolder[i] >= tables.db.NumFolders) {
            status = Status::Damaged;
        }
    }
    return status;
}

Status finishFolders(Archive &archive, UnpackSink &sink, const UnpackLimits &limits)
{
    for (std::uint32_t i = archive.entryCount(); i-- > 0;) {
        Entry entry;
        Status status = archive.entry(i, entry);
        if (status == Status::Ok && entry.isFolder && limits.takes(i)) {
            status = sink.finishFolder(entry);
        }
        if (status != Status::Ok) {
            return status;
        }
    }
    return Status::Ok;
}

} // namespace

Status unpack(Archive &archive, UnpackSink &sink, std::uint64_t totalBytes,
              const UnpackLimits &limits)
{
    Status status = sink.begin(totalBytes, archive.entryCount());
    if (status == Status::Ok) {
        status = makeEmptyEntries(archive, sink, limits);
    }
    if (status == Status::Ok) {
        status = unpackSolidBlocks(archive, sink, totalBytes, limits);
    }
    return status == Status::Ok ? finishFolders(archive, sink, limits) : status;
}

} // namespace sfx
