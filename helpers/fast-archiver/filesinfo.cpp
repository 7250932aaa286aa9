// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/fast-archiver/filesinfo.h"

#include "helpers/fast-archiver/headerproperties.h"

#include <algorithm>

namespace fast {

namespace {

void writeProperty(HeaderWriter &header, Property property, const HeaderWriter &content)
{
    header.byte(property);
    header.number(content.content().size());
    header.bytes(content.content());
}

using Entries = std::vector<const SourceFile *>;

Entries entriesOf(const std::vector<SourceFile> &files, const std::vector<SolidBlock> &blocks)
{
    Entries entries;
    for (const SourceFile &file : files) {
        if (file.size == 0) {
            entries.push_back(&file);
        }
    }
    for (const SolidBlock &block : blocks) {
        for (const std::size_t index : block.files) {
            entries.push_back(&files[index]);
        }
    }
    return entries;
}

void writeEmptiness(HeaderWriter &header, const Entries &entries)
{
    std::vector<bool> hasNoStream;
    std::vector<bool> isEmptyFile; // of the entries without a stream
    for (const SourceFile *const entry : entries) {
        hasNoStream.push_back(entry->size == 0);
        if (entry->size == 0) {
            isEmptyFile.push_back(!entry->isFolder);
        }
    }
    if (isEmptyFile.empty()) {
        return;
    }
    HeaderWriter streams;
    streams.bits(hasNoStream);
    writeProperty(header, EmptyStream, streams);
    if (std::find(isEmptyFile.begin(), isEmptyFile.end(), true) != isEmptyFile.end()) {
        HeaderWriter emptyFiles;
        emptyFiles.bits(isEmptyFile);
        writeProperty(header, EmptyFile, emptyFiles);
    }
}

} // namespace

void writeFilesInfo(HeaderWriter &header, const std::vector<SourceFile> &files,
                    const std::vector<SolidBlock> &blocks)
{
    const Entries entries = entriesOf(files, blocks);
    header.byte(FilesInfo);
    header.number(entries.size());
    writeEmptiness(header, entries);
    HeaderWriter names;
    HeaderWriter times;
    HeaderWriter attributes;
    names.byte(isHere);
    for (HeaderWriter *const numbers : {&times, &attributes}) {
        numbers->byte(allAreDefined);
        numbers->byte(isHere);
    }
    for (const SourceFile *const entry : entries) {
        for (const char16_t unit : entry->path) {
            names.byte(static_cast<std::uint8_t>(unit & 0xff));
            names.byte(static_cast<std::uint8_t>(unit >> 8));
        }
        names.byte(0);
        names.byte(0);
        times.fixed64(entry->modified);
        attributes.fixed32(entry->attributes);
    }
    writeProperty(header, Names, names);
    writeProperty(header, MTime, times);
    writeProperty(header, WinAttributes, attributes);
    header.byte(End);
}

} // namespace fast
