// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

// Little-endian numbers in byte buffers, the way PE and ICO files store them.
namespace pe {

using Bytes = std::vector<std::uint8_t>;        // owns its bytes
using ByteView = std::span<const std::uint8_t>; // does not

// The caller has checked that the number lies inside: position + width <= bytes.size().
inline std::uint16_t read16(ByteView bytes, std::size_t position)
{
    return static_cast<std::uint16_t>(bytes[position] | (bytes[position + 1] << 8));
}

inline std::uint32_t read32(ByteView bytes, std::size_t position)
{
    return read16(bytes, position)
        | (static_cast<std::uint32_t>(read16(bytes, position + 2)) << 16);
}

inline void write16(std::span<std::uint8_t> bytes, std::size_t position, std::uint16_t value)
{
    bytes[position] = static_cast<std::uint8_t>(value & 0xff);
    bytes[position + 1] = static_cast<std::uint8_t>(value >> 8);
}

inline void write32(std::span<std::uint8_t> bytes, std::size_t position, std::uint32_t value)
{
    write16(bytes, position, static_cast<std::uint16_t>(value & 0xffff));
    write16(bytes, position + 2, static_cast<std::uint16_t>(value >> 16));
}

// Rounds up to a multiple of a power of two. `value` must be far below the type's largest value.
inline std::uint64_t alignUp(std::uint64_t value, std::uint64_t alignment)
{
    return (value + alignment - 1) & ~(alignment - 1);
}

// True if [offset, offset + length) lies inside [0, total). Does not overflow.
inline bool fits(std::uint64_t offset, std::uint64_t length, std::uint64_t total)
{
    return offset <= total && length <= total - offset;
}

} // namespace pe
