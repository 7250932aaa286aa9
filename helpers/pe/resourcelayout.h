// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/pe/resourcetree.h"

#include <optional>
#include <vector>

namespace pe {

// Bytes that belong at an offset of the file.
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
    std::vector<ResourceRange> taken; // what must not be written to
    std::uint32_t length = 0;         // bytes that are there
    std::uint32_t maxLength = 0; // bytes that there could be; more than `length` lets the room grow
    bool keepTables = false;     // leave tables that did not change where they are
};

// Where the parts of a tree went.
struct Layout
{
    std::vector<Patch> content; // everything new but the root
    Patch root;
    std::uint32_t usedEnd = 0; // the end of the last byte written
};

// Finds room for whatever the tree has that the file has not; resources with a place keep it. The
// root stays at position 0. Nothing when the room is too small. The positions in the tree become
// those of the layout, and new content moves out of it.
std::optional<Layout> layOut(ResourceTree &tree, const LayoutRoom &room);

// The place of all data of the tree that lie inside [rva, rva + length), from rva on.
std::vector<ResourceRange> dataRanges(const ResourceTree &tree, std::uint32_t rva,
                                      std::uint32_t length);

} // namespace pe
