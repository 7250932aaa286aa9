// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/fast-archiver/failure.h"
#include "helpers/pe/file.h"

namespace fast {

// The archive while it is written. Its destructor removes the file unless keep() was called.
class ArchiveFile
{
public:
    // Creates the file, or empties an older one.
    static Outcome<ArchiveFile> create(const pe::NativePath &path);

    ArchiveFile(ArchiveFile &&other) noexcept;
    ArchiveFile &operator=(ArchiveFile &&) = delete;
    ~ArchiveFile() { abandon(); }

    std::uint64_t size() const { return m_size; }

    // Adds bytes at the end.
    Outcome<Done> append(pe::ByteView bytes);
    // Writes over the first bytes.
    Outcome<Done> replaceStart(pe::ByteView bytes);

    // Closes the file, which is complete.
    void keep();
    // Closes and removes the file. Nothing can be written from now on.
    void abandon();

private:
    ArchiveFile(pe::NativePath path, pe::File file);
    Outcome<Done> write(std::uint64_t offset, pe::ByteView bytes);

    pe::NativePath m_path; // empty after keep() and abandon()
    pe::File m_file;
    std::uint64_t m_size = 0;
};

} // namespace fast
