// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/bytesource.h"
#include "helpers/self-extractor/base/status.h"

#include "7z.h"

namespace sfx {

/// How one solid block (a group of files that was packed as one stream; 7-Zip's sources call it a
/// folder) is decoded, and where its packed streams lie. Borrows from the archive's tables.
struct CoderGraph
{
    CSzFolder wiring = {};                    ///< the coders, and which of them feeds which
    const std::uint8_t *properties = nullptr; ///< base of CSzCoderInfo::PropsOffset
    const UInt64 *unpackSizes = nullptr;      ///< of each coder's output
    const UInt64 *packPositions
        = nullptr; ///< of each packed stream, and of the end of the last one
    ByteSource *source = nullptr;
    std::uint64_t packBase = 0;
};

/// `packBase` is the offset in `source` that the positions of packed streams are counted from.
/// Damaged, Unsupported: the solid block's description is wrong, or beyond this module.
Status readCoderGraph(const CSzAr &streams, std::uint32_t solidBlock, ByteSource &source,
                      std::uint64_t packBase, CoderGraph &graph);

/// What the decoder of a coder needs as its window, in bytes; 0 for coders without one, or with
/// properties that they cannot have. Not checked against any limit.
std::uint64_t windowSize(const CoderGraph &graph, unsigned coder);
/// The windows of all coders together.
std::uint64_t windowSize(const CoderGraph &graph);

/// Looks at how a solid block is packed, before memory is taken for it or anything is read. Unsupported:
/// a method that this module does not have, or dictionaries that need more than `memory` bytes
/// together. Damaged: coders that feed each other in a circle.
Status checkCoderGraph(const CoderGraph &graph, std::uint64_t memory);

} // namespace sfx
