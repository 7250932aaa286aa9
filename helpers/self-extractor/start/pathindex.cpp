// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/start/pathindex.h"

namespace sfx {

std::uint64_t hashPath(std::uint64_t before, const char16_t *units, std::size_t size)
{
    constexpr std::uint64_t prime = 0x100000001b3;
    for (std::size_t i = 0; i < size; ++i) {
        before = (before ^ (units[i] & 0xff)) * prime;
        before = (before ^ static_cast<unsigned>(units[i] >> 8)) * prime;
    }
    return before;
}

// The slot that contains this hash, or the free one where it belongs.
std::size_t PathIndex::slotOf(std::uint64_t hash) const
{
    const std::size_t mask = m_slots.size() - 1;
    std::size_t slot = static_cast<std::size_t>(hash ^ (hash >> 32)) & mask;
    while (m_slots[slot] != none && m_hashes[m_slots[slot]] != hash) {
        slot = (slot + 1) & mask;
    }
    return slot;
}

bool PathIndex::build(Array<std::uint64_t> hashes)
{
    std::size_t slots = 2;
    while (slots < 2 * hashes.size()) {
        slots *= 2;
    }
    if (!m_slots.allocate(slots)) {
        return false;
    }
    for (std::size_t i = 0; i < slots; ++i) {
        m_slots[i] = none;
    }
    m_hashes = std::move(hashes);
    for (std::size_t i = 0; i < m_hashes.size(); ++i) {
        std::uint32_t &position = m_slots[slotOf(m_hashes[i])];
        if (position == none) {
            position = static_cast<std::uint32_t>(i);
        }
    }
    return true;
}

std::uint32_t PathIndex::find(std::uint64_t hash) const
{
    return m_slots.size() == 0 ? none : m_slots[slotOf(hash)];
}

} // namespace sfx
