// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/memory.h"
#include "helpers/self-extractor/base/status.h"

#include <cstddef>
#include <cstdint>

namespace sfx {

/// Turns a text to upper case in place, the way the file system that is unpacked to does it when it
/// compares names.
using UpperCase = void (*)(char16_t *text, std::size_t size);

/// All paths of an archive, to find those that would meet in one file: names that differ in case
/// only, names that come twice, and files that are folders to other entries.
class PathSet
{
public:
    explicit PathSet(UpperCase upperCase) : m_upperCase(upperCase) {}

    /// Makes room; `totalUnits` counts all paths' UTF-16 units.
    [[nodiscard]] bool allocate(std::size_t count, std::size_t totalUnits);
    /// Adds a path with `/` between its components. No more than were announced.
    void add(const char16_t *path, std::size_t size, bool isFolder);
    /// Whether any two paths collide. To be called once, after the last add().
    bool collides();

private:
    struct Item
    {
        const char16_t *path;
        std::uint32_t size;
        bool isFolder;
    };

    static int compare(const Item &left, const Item &right);
    void sort();
    void siftDown(std::size_t root, std::size_t end);

    UpperCase m_upperCase;
    Array<Item> m_items;
    Array<char16_t> m_units;
    std::size_t m_count = 0;
    std::size_t m_used = 0;
};

} // namespace sfx
