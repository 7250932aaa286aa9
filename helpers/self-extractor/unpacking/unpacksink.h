// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/archive/archive.h"

namespace sfx {

// Receives unpacked entries. The order of calls: begin(); then for each entry makeFolder(), or
// beginFile(), any number of write() and endFile(); at the end finishFolder() for each folder, in
// reverse order. A file whose name could be a short name is first begun and ended as an empty file.
// A status other than Ok ends the run.
class UnpackSink
{
public:
    virtual ~UnpackSink() = default;

    virtual Status begin(std::uint64_t totalBytes, std::uint32_t entries) = 0;
    // The parent folders may not have been created yet.
    virtual Status makeFolder(const Entry &folder) = 0;
    virtual Status beginFile(const Entry &file) = 0;
    virtual Status write(const std::uint8_t *data, std::size_t size) = 0;
    // The file's content is complete and its CRC is right.
    virtual Status endFile(const Entry &file) = 0;
    // Nothing more will be created in this folder: time and attributes can be set.
    virtual Status finishFolder(const Entry &folder) = 0;

    // A sink for another thread, writing to the same folder. Each file is written by one sink. This
    // sink must outlive the new one. Empty if there can be only one sink. Any thread may call it, one at
    // a time, while the sinks are used.
    virtual Owned<UnpackSink> another() { return Owned<UnpackSink>(); }
};

} // namespace sfx
