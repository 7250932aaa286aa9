// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/archive/pathset.h"

#include <cstring>

namespace sfx {

bool PathSet::allocate(std::size_t count, std::size_t totalUnits)
{
    return m_items.allocate(count) && m_units.allocate(totalUnits);
}

void PathSet::add(const char16_t *path, std::size_t size, bool isFolder)
{
    char16_t *own = m_units.data() + m_used;
    std::memcpy(own, path, size * sizeof(char16_t));
    m_upperCase(own, size);
    // With a separator that sorts before every allowed character, a folder is directly followed by
    // its content.
    for (std::size_t i = 0; i < size; ++i) {
        if (own[i] == u'/') {
            own[i] = 1;
        }
    }
    m_used += size;
    m_items[m_count++] = Item{own, static_cast<std::uint32_t>(size), isFolder};
}

int PathSet::compare(const Item &left, const Item &right)
{
    const std::uint32_t common = left.size < right.size ? left.size : right.size;
    for (std::uint32_t i = 0; i < common; ++i) {
        if (left.path[i] != right.path[i]) {
            return left.path[i] < right.path[i] ? -1 : 1;
        }
    }
    return left.size == right.size ? 0 : (left.size < right.size ? -1 : 1);
}

void PathSet::siftDown(std::size_t root, std::size_t end)
{
    for (;;) {
        std::size_t child = 2 * root + 1;
        if (child >= end) {
            return;
        }
        if (child + 1 < end && compare(m_items[child], m_items[child + 1]) < 0) {
            ++child;
        }
        if (compare(m_items[root], m_items[child]) >= 0) {
            return;
        }
        std::swap(m_items[root], m_items[child]);
        root = child;
    }
}

// Heap sort: it has no recursion, and no bad case that a forged archive could cause.
void PathSet::sort()
{
    for (std::size_t root = m_count / 2; root-- > 0;) {
        siftDown(root, m_count);
    }
    for (std::size_t end = m_count; end > 1;) {
        --end;
        std::swap(m_items[0], m_items[end]);
        siftDown(0, end);
    }
}

bool PathSet::collides()
{
    sort();
    for (std::size_t i = 1; i < m_count; ++i) {
        const Item &before = m_items[i - 1];
        const Item &item = m_items[i];
        if (item.size < before.size
            || std::memcmp(item.path, before.path, before.size * sizeof(char16_t)) != 0) {
            continue;
        }
        const bool same = item.size == before.size;
        const bool inside = !same && item.path[before.size] == 1;
        if (same || (inside && !before.isFolder)) {
            return true;
        }
    }
    return false;
}

} // namespace sfx
