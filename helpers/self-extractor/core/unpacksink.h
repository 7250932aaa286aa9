// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/core/archive.h"

namespace sfx {

/// Where unpacked entries go. The order of calls: begin(), then for each entry makeFolder(), or
/// beginFile(), write() as often as needed and endFile(); at the end finishFolder() for each
/// folder, the last one first. Between the beginFile() and the endFile() of a file there may be other
/// entries: pauseFile() leaves it, resumeFile() comes back. A status other than Ok ends the run.
class UnpackSink
{
public:
    virtual ~UnpackSink() = default;

    virtual Status begin(std::uint64_t totalBytes, std::uint32_t entries) = 0;
    /// The parents of a folder or file need not have come before it.
    virtual Status makeFolder(const Entry &folder) = 0;
    virtual Status beginFile(const Entry &file) = 0;
    virtual Status write(const std::uint8_t *data, std::size_t size) = 0;
    /// The file's content is complete and its CRC is right.
    virtual Status endFile(const Entry &file) = 0;
    /// Nothing more is going to be made in this folder: time and attributes can be set.
    virtual Status finishFolder(const Entry &folder) = 0;

    /// A second sink for the same place, for another thread, which has files of its own and pieces of
    /// common ones that do not overlap. This one outlives it. Empty: there is only one.
    virtual Owned<UnpackSink> another() { return Owned<UnpackSink>(); }
    /// Only where there are several sinks.
    virtual Status pauseFile() { return Status::WriteFailed; }
    /// `offset`: where the next write() goes, in bytes from the start of the file; bytes that were
    /// left out may come later. Only where there are several sinks; of any of them.
    virtual Status resumeFile(const Entry &file, std::uint64_t offset);
};

inline Status UnpackSink::resumeFile(const Entry &, std::uint64_t)
{
    return Status::WriteFailed;
}

} // namespace sfx
