// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/fast-archiver/packoptions.h"
#include "helpers/fast-archiver/sourcefile.h"

#include <vector>

namespace fast {

// Files that are packed together, as one stream (a "folder" in the words of the 7z format). Blocks
// are independent: each can be packed and unpacked by another processor.
struct SolidBlock
{
    std::vector<std::size_t> files; // indices in the list of files
    std::uint64_t size = 0;         // of all of them, in bytes
    bool isFiltered = false;        // with the filter for x86 programs
    // Whether it is one file of at least largeFile bytes. Several threads pack such a block
    // together.
    bool isLarge = false;
};

constexpr std::uint64_t largeFile = std::uint64_t{48} << 20;

// The size of a block if the options do not name one.
std::uint64_t blockSizeFor(std::uint64_t totalSize);

// Distributes all files that are not empty. Files that fill a block come first, the largest before
// the others, each in a block for itself. The rest is sorted by kind, so that similar files lie
// beside each other, and divided into blocks of about the same size. If the options name no size, one
// of three or more blocks is cut into halves, which come last.
std::vector<SolidBlock> planBlocks(const std::vector<SourceFile> &files,
                                   const PackOptions &options);

} // namespace fast
