// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/pe/bytes.h"
#include "helpers/pe/result.h"

#include <cstdint>
#include <filesystem>

namespace pe {

// A half-open range of bytes in a file.
struct FileRange
{
    std::uint64_t begin = 0;
    std::uint64_t end = 0;
};

// An open file, read and written at explicit 64-bit offsets; closes itself.
class File
{
public:
    enum class Access {
        Read,
        Edit, // read and write; waits for another editor of the same file to be done
    };

    // Whatever fails, and what is no file, is CannotRead.
    static Result<File> open(const std::filesystem::path &path, Access access);

    File() = default;
    File(File &&other) noexcept;
    File &operator=(File &&other) noexcept;
    ~File();

    // Bytes at the time of opening (of a new file: as set by Replacement::resize).
    std::uint64_t size() const { return m_size; }

    // Reads exactly the buffer's size; a file that ends earlier is an error.
    Result<Done> readAt(std::uint64_t offset, std::span<std::uint8_t> buffer) const;
    Result<Bytes> readAt(std::uint64_t offset, std::size_t length) const;
    Result<Done> writeAt(std::uint64_t offset, ByteView bytes);

    // The next stretch at or after `from` that may hold other bytes than zero; empty at the end.
    // Lets sparse files be summed and copied without visiting their holes.
    FileRange nextData(std::uint64_t from) const;

private:
    friend class Replacement;
    void close();

    // A file descriptor, or a HANDLE.
    static constexpr std::intptr_t noHandle = -1;
    std::intptr_t m_handle = noHandle;
    std::uint64_t m_size = 0;
};

} // namespace pe
