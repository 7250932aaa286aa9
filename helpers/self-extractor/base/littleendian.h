// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>

namespace sfx {

inline std::uint16_t readU16(const std::uint8_t *data)
{
    return static_cast<std::uint16_t>(data[0] | (data[1] << 8));
}

inline std::uint32_t readU32(const std::uint8_t *data)
{
    return static_cast<std::uint32_t>(readU16(data))
        | (static_cast<std::uint32_t>(readU16(data + 2)) << 16);
}

inline std::uint64_t readU64(const std::uint8_t *data)
{
    return readU32(data) | (static_cast<std::uint64_t>(readU32(data + 4)) << 32);
}

} // namespace sfx
