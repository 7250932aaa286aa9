// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>

namespace sfx {

/// The CRC-32 of two stretches of bytes, one behind the other, from the CRC of each and the length
/// of the second in bytes.
std::uint32_t joinCrc(std::uint32_t first, std::uint32_t second, std::uint64_t secondSize);

} // namespace sfx
