// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/memory.h"

namespace sfx {

// A hash of a path of the archive (FNV-1a, 64 bits), made name by name.
constexpr std::uint64_t emptyPathHash = 0xcbf29ce484222325;
// The hash of a path that is followed by these units.
std::uint64_t hashPath(std::uint64_t before, const char16_t *units, std::size_t size);
// The same for a separator: the entries of a folder begin after it.
inline std::uint64_t hashInside(std::uint64_t folder)
{
    return hashPath(folder, u"/", 1);
}

// Finds paths by their hashes.
class PathIndex
{
public:
    static constexpr std::uint32_t none = UINT32_MAX;

    // Takes the hashes; there are fewer than 2^31. Returns false if there is not enough memory.
    [[nodiscard]] bool build(Array<std::uint64_t> hashes);
    // The position of the first path with this hash, or `none`.
    std::uint32_t find(std::uint64_t hash) const;
    const Array<std::uint64_t> &hashes() const { return m_hashes; }

private:
    std::size_t slotOf(std::uint64_t hash) const;

    Array<std::uint64_t> m_hashes;
    Array<std::uint32_t> m_slots; // positions; a power of 2 in number, at most half of it in use
};

} // namespace sfx
