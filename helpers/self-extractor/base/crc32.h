// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <cstdint>

namespace sfx {

// Makes the table, and finds out whether the processor multiplies without carries (PCLMULQDQ: nearly
// all for x64 since 2013). Call it before crc32() and before 7-Zip's functions for this check sum. It
// may be called again.
void prepareCrc32();

// The check sum CRC-32 of zip and 7z archives. `sum` is that of the bytes before these, 0 at the
// beginning.
std::uint32_t crc32(std::uint32_t sum, const void *data, std::size_t size);

} // namespace sfx
