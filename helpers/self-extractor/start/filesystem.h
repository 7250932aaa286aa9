// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>

namespace sfx {

// Whether a file system, named as Windows names it ("NTFS", "FAT32"), can hold a file of `size`
// bytes. FAT reports a full disk if it cannot.
bool holdsFileOf(const char16_t *fileSystem, std::uint64_t size);

} // namespace sfx
