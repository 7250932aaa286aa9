// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/unpacking/unpacksink.h"

namespace sfx {

// Limits of unpacking, and what is left out.
struct UnpackLimits
{
    unsigned threads = 1;                // maximum number of threads
    std::uint64_t memory = 256ull << 20; // for all decoders and their buffers, in bytes
    // For each entry of the archive, whether it is not unpacked; nullptr: all are.
    const bool *skipped = nullptr;

    bool takes(std::uint32_t index) const { return skipped == nullptr || !skipped[index]; }
};

// With more threads nothing is gained: by then the disk is the limit.
constexpr unsigned maxUnpackThreads = 8;

// Unpacks all files that have content, without the skipped ones, and checks each file's CRC. Every
// solid block is decoded by one thread; several solid blocks are decoded at the same time, as far as
// the limits and the sink allow. Solid blocks whose files are all skipped are not decoded. The first
// failure stops all threads and is returned. One decoder always runs, even if it
// needs more memory than `limits.memory`.
Status unpackSolidBlocks(const Archive &archive, UnpackSink &sink, std::uint64_t totalBytes,
                         const UnpackLimits &limits);

} // namespace sfx
