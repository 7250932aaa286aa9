// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/bytesource.h"
#include "helpers/self-extractor/base/memory.h"
#include "helpers/self-extractor/base/status.h"

#include "7z.h"

namespace sfx {

// How one solid block is decoded, and where its packed streams are in the file. (A solid block is a
// group of files that was packed as one stream; 7-Zip's sources call it a folder.) Points into the
// archive's tables.
struct CoderGraph
{
    CSzFolder wiring = {};                    // the coders, and which coder feeds which
    const std::uint8_t *properties = nullptr; // base of CSzCoderInfo::PropsOffset
    const UInt64 *unpackSizes = nullptr;      // of each coder's output
    const UInt64 *packPositions = nullptr; // of each packed stream, and of the end of the last one
    ByteSource *source = nullptr;
    std::uint64_t packBase = 0;
    // Memory that a decoder may take for its window, and gives back there when it is destroyed. So
    // the thread's next solid block has it: new memory costs the system a page fault for each 4 KiB.
    Array<std::uint8_t> *spareWindow = nullptr;
};

// `packBase` is the offset in `source` that the positions of packed streams are relative to.
// Damaged: the description is wrong. Unsupported: this module cannot decode it.
Status readCoderGraph(const CSzAr &streams, std::uint32_t solidBlock, ByteSource &source,
                      std::uint64_t packBase, CoderGraph &graph);

// The number of a coder's first input. The inputs of all coders are numbered in their order.
inline unsigned firstInput(const CSzFolder &wiring, unsigned coder)
{
    unsigned input = 0;
    for (unsigned i = 0; i < coder; ++i) {
        input += wiring.Coders[i].NumStreams;
    }
    return input;
}

// Sets the place, in the source, of the packed stream that feeds this input. Returns false if no
// packed stream does.
inline bool findPackedStream(const CoderGraph &graph, unsigned input, std::uint64_t &offset,
                             std::uint64_t &size)
{
    for (unsigned i = 0; i < graph.wiring.NumPackStreams; ++i) {
        if (graph.wiring.PackStreams[i] == input) {
            offset = graph.packBase + graph.packPositions[i];
            size = graph.packPositions[i + 1] - graph.packPositions[i];
            return true;
        }
    }
    return false;
}

// The size of the window that a coder's decoder needs, in bytes. 0 if the coder has no window or
// invalid properties; UINT64_MAX if its method is Zstandard and this module does not decode it. Reads
// the beginning of the packed data if the window's size is only there. No other limit is checked.
std::uint64_t windowSize(const CoderGraph &graph, unsigned coder);
// The sum for all coders, which checkCoderGraph() accepts.
std::uint64_t windowSize(const CoderGraph &graph);

// Checks how a solid block is packed, before memory is allocated for it and before it is decoded.
// Unsupported: this module does not have a method, or the dictionaries together need more than
// `memory` bytes. Damaged: coders feed each other in a circle.
Status checkCoderGraph(const CoderGraph &graph, std::uint64_t memory);

} // namespace sfx
