// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/pe/resourcetree.h"

#include <optional>
#include <vector>

namespace pe {

// Bytes to write at an offset of the file.
struct Patch
{
    std::uint64_t offset = 0;
    Bytes bytes;
};

// The room in which a tree is laid out. Positions count from the root's first byte, which is at
// rootRva in memory and at rootOffset in the file.
struct LayoutRoom
{
    std::uint32_t rootRva = 0;
    std::uint64_t rootOffset = 0;
    std::vector<ResourceRange> taken; // must not be written to
    std::uint32_t length = 0;         // bytes that exist now
    std::uint32_t maxLength = 0;      // bytes that the room may grow to
};

// Where the parts of a tree go.
struct Layout
{
    std::vector<Patch> patches;
    std::uint32_t usedEnd = 0; // position after the last byte written
};

// Finds room for all tables and for new content; content that the file has already stays where it is.
// The root goes to position 0. Returns nothing if the room is too small. Sets the positions in the
// tree and moves new content out of it.
std::optional<Layout> layOut(ResourceTree &tree, const LayoutRoom &room);

// Where the content of the tree's resources lies inside [rva, rva + length); positions count from rva.
std::vector<ResourceRange> dataRanges(const ResourceTree &tree, std::uint32_t rva,
                                      std::uint32_t length);

} // namespace pe
