// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <cstdint>

namespace sfx {

// SHA-256 (NIST, FIPS 180-4).
class Sha256
{
public:
    static constexpr std::size_t digestSize = 32;

    void add(const void *data, std::size_t size);
    // Call it once, after the last add().
    void finish(std::uint8_t (&digest)[digestSize]);

private:
    void addBlock();

    std::uint32_t m_state[8] = {0x6a09e667, 0xbb67ae85, 0x3c6ef372, 0xa54ff53a,
                                0x510e527f, 0x9b05688c, 0x1f83d9ab, 0x5be0cd19};
    std::uint8_t m_block[64] = {};
    std::uint64_t m_size = 0; // of all data, in bytes
};

} // namespace sfx
