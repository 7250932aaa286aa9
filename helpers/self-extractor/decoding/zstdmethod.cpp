// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/decoding/zstdmethod.h"

#include "helpers/self-extractor/decoding/zstdheader.h"
#include "helpers/self-extractor/decoding/zstdstream.h"

#include <algorithm>

namespace sfx {

namespace {

// The properties say which version and level of the packer made the frames. The frames say the rest.
constexpr unsigned mostProperties = 5;

} // namespace

std::uint64_t zstdWindow(const CoderGraph &graph, unsigned coder)
{
    const CSzCoderInfo &info = graph.wiring.Coders[coder];
    std::uint8_t begin[zstdHeaderSize];
    std::uint64_t offset = 0;
    std::uint64_t size = 0;
    if (info.NumStreams != 1 || info.PropsSize > mostProperties) {
        return UINT64_MAX;
    }
    if (findPackedStream(graph, firstInput(graph.wiring, coder), offset, size)) {
        size = std::min<std::uint64_t>(size, sizeof begin);
        if (!graph.source->readAt(offset, begin, static_cast<std::size_t>(size))) {
            size = 0;
        }
    }
    const std::uint64_t window
        = zstdWindowSize(begin, static_cast<std::size_t>(size), graph.unpackSizes[coder]);
    return window <= maxZstdWindow ? window : UINT64_MAX;
}

Status openZstd(const CoderGraph &graph, unsigned coder, Owned<Stream> input,
                Owned<WindowStream> &decoder)
{
    auto zstd
        = makeOwned<ZstdStream>(std::move(input), graph.unpackSizes[coder], graph.spareWindow);
    if (!zstd) {
        return Status::NoMemory;
    }
    const Status status = zstd->open(zstdWindow(graph, coder));
    decoder = std::move(zstd);
    return status;
}

} // namespace sfx
