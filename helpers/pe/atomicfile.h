// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/pe/file.h"

namespace pe {

// A new file beside the target, which replaces the target in one step. The target keeps its old content
// until commit(); without commit() the new file is removed.
//
// The new file is not flushed to the disk. A process that is killed loses nothing by that; after a power
// cut the job has to be run again anyway. To flush a file of 1 GiB takes longer than the engine
// waits for an edit.
class AtomicFile
{
public:
    // The target need not exist. If it is a symbolic link, the file that it names is replaced.
    static Result<AtomicFile> beside(const NativePath &target);

    AtomicFile(AtomicFile &&other) noexcept;
    AtomicFile &operator=(AtomicFile &&) = delete;
    ~AtomicFile();

    File &file() { return m_file; }

    // Sets the length; new bytes are zero.
    Result<Done> resize(std::uint64_t size);

    // Copies a range of `source` to the offset `to`, inside the kernel if it can. Holes that
    // File::nextData() finds stay holes.
    Result<Done> copyFrom(const File &source, const FileRange &range, std::uint64_t to);

    // Gives the new file the permissions of `original` and the target's name. Closes `original`, since
    // Windows does not replace a file that is open.
    Result<Done> commit(File original);

private:
    explicit AtomicFile(const NativePath &target);

    Result<Done> copyThroughMemory(const File &source, const FileRange &range, std::uint64_t to);

    File m_file;
    NativePath m_target;
    NativePath m_temporary; // empty while the file has no name
};

} // namespace pe
