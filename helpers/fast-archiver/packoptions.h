// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>

namespace fast {

// How the archive is packed. Two runs with the same files and the same options write the same
// bytes, whatever `threads` is.
struct PackOptions
{
    int level = 16;         // libzstd's, from 1 to 22
    unsigned windowLog = 0; // the largest window, as a power of two, from 20 to 27; 0: by block
    std::uint64_t blockSize = 0; // of a solid block, in bytes; 0: chosen by the size of all files
    bool filtersPrograms = true; // use the x86 filter for programs
    unsigned threads = 0;        // 0: as many as processors
};

} // namespace fast
