// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/core/pathset.h"
#include "helpers/self-extractor/core/unpacksink.h"

namespace sfx {

/// Looks at every entry before anything is written: names, kinds, collisions, and that `program` is
/// a file at the top level. `totalBytes` becomes the size of all files together.
Status checkContents(Archive &archive, const Text &program, UpperCase upperCase,
                     std::uint64_t &totalBytes);

/// What unpacking may take from the machine. The first decoder is always there, whatever it needs.
struct UnpackLimits
{
    unsigned threads = 1;                ///< processors that there are for it
    std::uint64_t memory = 256ull << 20; ///< for all decoders and their buffers, in bytes
};

/// Unpacks everything and checks each file's CRC. Parts of the archive that do not need each other
/// are decoded at the same time, in as many threads as the limits and the sink allow; nothing is
/// promised about the order. Damaged: a CRC is wrong or missing, or the data ends too early.
Status unpack(Archive &archive, UnpackSink &sink, std::uint64_t totalBytes,
              const UnpackLimits &limits = UnpackLimits());

} // namespace sfx
