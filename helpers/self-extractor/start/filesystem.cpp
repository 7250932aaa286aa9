// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/start/filesystem.h"

namespace sfx {

// FAT and FAT32 have 32 bits for the size of a file; exFAT has 64.
bool holdsFileOf(const char16_t *fileSystem, std::uint64_t size)
{
    const bool isFat = fileSystem[0] == u'F' && fileSystem[1] == u'A' && fileSystem[2] == u'T';
    return !isFat || size <= UINT32_MAX;
}

} // namespace sfx
