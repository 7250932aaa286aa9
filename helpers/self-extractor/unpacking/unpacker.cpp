// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/unpacking/unpacker.h"

namespace sfx {

namespace {

// Folders, and files without content. The other files must have a CRC.
Status makeEmptyEntries(Archive &archive, UnpackSink &sink)
{
    const CSzArEx &tables = archive.tables();
    Status status = Status::Ok;
    for (std::uint32_t i = 0; status == Status::Ok && i < archive.entryCount(); ++i) {
        Entry entry;
        status = archive.entry(i, entry);
        if (status != Status::Ok) {
            return status;
        }
        if (entry.isFolder) {
            status = sink.makeFolder(entry);
        } else if (entry.size == 0) {
            status = sink.beginFile(entry);
            if (status == Status::Ok) {
                status = sink.endFile(entry);
            }
        } else if (!SzBitWithVals_Check(&tables.CRCs, i)
                   || tables.FileToFolder[i] >= tables.db.NumFolders) {
            status = Status::Damaged;
        }
    }
    return status;
}

Status finishFolders(Archive &archive, UnpackSink &sink)
{
    for (std::uint32_t i = archive.entryCount(); i-- > 0;) {
        Entry entry;
        Status status = archive.entry(i, entry);
        if (status == Status::Ok && entry.isFolder) {
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
        status = makeEmptyEntries(archive, sink);
    }
    if (status == Status::Ok) {
        status = unpackSolidBlocks(archive, sink, totalBytes, limits);
    }
    return status == Status::Ok ? finishFolders(archive, sink) : status;
}

} // namespace sfx
