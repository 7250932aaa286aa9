// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/fast-archiver/failure.h"
#include "helpers/fast-archiver/sourcefile.h"

#include <atomic>
#include <vector>

namespace fast {

// Lists single folders; scanFolder() calls it for all.
class FolderListing
{
public:
    // `root` is the folder to pack, and ends with a separator.
    FolderListing(const pe::NativePath &root, const std::atomic<bool> &stopped);

    // Adds what is in a folder to files(); nullptr stands for the root.
    Outcome<Done> list(const SourceFile *folder);

    std::vector<SourceFile> &files() { return m_files; }

private:
    struct SystemEntry; // what the system tells while it lists a folder

    Outcome<Done> add(const SourceFile *folder, const SystemEntry &entry);

    const pe::NativePath m_root;
    const std::atomic<bool> &m_stopped;
    std::vector<SourceFile> m_files;
};

} // namespace fast
