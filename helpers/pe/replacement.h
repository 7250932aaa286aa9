// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/pe/file.h"

namespace pe {

// A file under construction in the target's directory. The target keeps its old content until
// commit() puts the new file in its place in one step; without commit() nothing is left behind.
//
// Nothing is flushed to the disk: the writer may be killed at any moment, while a power cut in the
// middle of a packing job only costs a job that must be run again anyway. Flushing would cost
// the time of writing the whole file, which can have many gigabytes.
class Replacement
{
public:
    // The target need not exist. A symbolic link is followed, so that the link itself survives.
    static Result<Replacement> beside(const std::filesystem::path &target);

    Replacement(Replacement &&other) noexcept;
    Replacement &operator=(Replacement &&) = delete;
    ~Replacement();

    File &file() { return m_file; }

    // Sets the length; new bytes are zero.
    Result<Done> resize(std::uint64_t size);

    // Copies a range of `source` to the offset `to` by the fastest means there is. Holes stay holes
    // where File::nextData() knows of them.
    Result<Done> copyFrom(const File &source, const FileRange &range, std::uint64_t to);

    // Takes over the permissions of `original` and the target's name. `original` is closed: Windows
    // replaces no file that is open.
    Result<Done> commit(File original);

private:
    explicit Replacement(const std::filesystem::path &target);

    Result<Done> copyThroughMemory(const File &source, const FileRange &range, std::uint64_t to);

    File m_file;
    std::filesystem::path m_target;
    std::filesystem::path m_temporary; // empty while the file has no name
};

} // namespace pe
