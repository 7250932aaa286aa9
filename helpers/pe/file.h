// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/pe/bytes.h"
#include "helpers/pe/nativepath.h"
#include "helpers/pe/result.h"

#include <cstdint>

namespace pe {

// A half-open range of bytes in a file.
struct FileRange
{
    std::uint64_t begin = 0;
    std::uint64_t end = 0;
};

// An open file. Reads and writes at explicit 64-bit offsets. The destructor closes it.
class File
{
public:
    enum class Access {
        Read,
        Edit, // only if the file may be written; waits until no other editor has it open
    };

    // Any failure is CannotRead, also if the path names something other than a regular file.
    static Result<File> open(const NativePath &path, Access access);

    // Creates the file or empties it, for writing. Any failure is CannotWrite.
    static Result<File> create(const NativePath &path);

    File() = default;
    File(File &&other) noexcept;
    File &operator=(File &&other) noexcept;
    ~File();

    // The size when the file was opened, or as AtomicFile::resize() has set it.
    std::uint64_t size() const { return m_size; }

    // Reads exactly as many bytes as asked for; fails if the file ends earlier.
    Result<Done> readAt(std::uint64_t offset, std::span<std::uint8_t> buffer) const;
    Result<Bytes> readAt(std::uint64_t offset, std::size_t length) const;
    Result<Done> writeAt(std::uint64_t offset, ByteView bytes);

    // The next range at or after `from` that may hold other bytes than zero; empty at the end of the
    // file. With it sparse files are copied without reading their holes.
    FileRange nextData(std::uint64_t from) const;

private:
    friend class AtomicFile;
    void close();

    // A file descriptor, or a HANDLE.
    static constexpr std::intptr_t noHandle = -1;
    std::intptr_t m_handle = noHandle;
    std::uint64_t m_size = 0;
};

} // namespace pe
