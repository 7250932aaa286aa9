// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/memory.h"
#include "helpers/self-extractor/base/status.h"

#include <cstddef>
#include <cstdint>

namespace sfx {

// Converts a text to upper case in place, as the file system does when it compares names.
using UpperCase = void (*)(char16_t *text, std::size_t size);

// All paths of an archive. Finds those that would be the same file on Windows: names that differ
// only in case, names that occur twice, and files that are folders of other entries.
class PathSet
{
public:
    explicit PathSet(UpperCase upperCase) : m_upperCase(upperCase) {}

    // Allocates memory for `count` paths with `totalUnits` UTF-16 units together. Returns false if
    // there is not enough.
    [[nodiscard]] bool allocate(std::size_t count, std::size_t totalUnits);
    // Adds a path with `/` between its components. Not more than allocate() was called for.
    void add(const char16_t *path, std::size_t size, bool isFolder);
    // Whether any two paths collide. Call it once, after the last add().
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
