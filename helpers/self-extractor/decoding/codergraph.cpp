// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/decoding/codergraph.h"

#include "helpers/self-extractor/base/littleendian.h"
#include "helpers/self-extractor/decoding/bcj2stream.h"
#include "helpers/self-extractor/decoding/lzmastream.h"
#include "helpers/self-extractor/decoding/methods.h"
#include "helpers/self-extractor/decoding/zstdmethod.h"

#include <algorithm>

namespace sfx {

namespace {

// Without the limits of its window.
bool isSupported(const CSzCoderInfo &coder, const std::uint8_t *properties)
{
    switch (coder.MethodID) {
    case method::Lzma:
        return coder.NumStreams == 1 && coder.PropsSize == LZMA_PROPS_SIZE;
    case method::Lzma2:
        return coder.NumStreams == 1 && coder.PropsSize == 1
            && properties[0] <= lzma2LargestProperty;
    case method::Bcj2:
        return coder.NumStreams == Bcj2Stream::inputCount;
    case method::Copy:
    case method::Delta:
    case method::Arm64:
    case method::RiscV:
    case method::X86:
    case method::Ppc:
    case method::Ia64:
    case method::Arm:
    case method::ArmThumb:
    case method::Sparc:
    case method::Zstd:
        return coder.NumStreams == 1;
    default:
        return false;
    }
}

// The coder that reads the output of `coder`; NumCoders if none does.
unsigned readerOf(const CSzFolder &wiring, unsigned coder)
{
    for (unsigned i = 0; i < wiring.NumBonds; ++i) {
        if (wiring.Bonds[i].OutIndex != coder) {
            continue;
        }
        unsigned reader = 0;
        for (unsigned input = wiring.Bonds[i].InIndex;
             reader < wiring.NumCoders && input >= wiring.Coders[reader].NumStreams; ++reader) {
            input -= wiring.Coders[reader].NumStreams;
        }
        return reader;
    }
    return wiring.NumCoders;
}

// If there is no circle, the way from every coder leads to the main coder, whose output no coder
// reads.
bool hasCircle(const CSzFolder &wiring)
{
    for (unsigned i = 0; i < wiring.NumCoders; ++i) {
        unsigned at = i;
        for (unsigned steps = 0; at != wiring.UnpackStream; ++steps) {
            if (steps == wiring.NumCoders || at == wiring.NumCoders) {
                return true;
            }
            at = readerOf(wiring, at);
        }
    }
    return false;
}

} // namespace

Status readCoderGraph(const CSzAr &streams, std::uint32_t solidBlock, ByteSource &source,
                      std::uint64_t packBase, CoderGraph &graph)
{
    graph = CoderGraph();
    const std::size_t begin = streams.FoCodersOffsets[solidBlock];
    graph.properties = streams.CodersData + begin;
    CSzData data{graph.properties, streams.FoCodersOffsets[solidBlock + 1] - begin};
    const SRes parsed = SzGetNextFolderItem(&graph.wiring, &data);
    if (parsed == SZ_ERROR_UNSUPPORTED) {
        return Status::Unsupported;
    }
    if (parsed != SZ_OK || data.Size != 0
        || graph.wiring.UnpackStream != streams.FoToMainUnpackSizeIndex[solidBlock]) {
        return Status::Damaged;
    }
    graph.unpackSizes = streams.CoderUnpackSizes + streams.FoToCoderUnpackSizes[solidBlock];
    graph.packPositions = streams.PackPositions + streams.FoStartPackStreamIndex[solidBlock];
    graph.source = &source;
    graph.packBase = packBase;
    return Status::Ok;
}

std::uint64_t windowSize(const CoderGraph &graph, unsigned coder)
{
    const CSzCoderInfo &info = graph.wiring.Coders[coder];
    const std::uint8_t *properties = graph.properties + info.PropsOffset;
    std::uint64_t dictionary = 0;
    if (info.MethodID == method::Lzma && info.PropsSize == LZMA_PROPS_SIZE) {
        dictionary = readU32(properties + 1);
    } else if (info.MethodID == method::Lzma2 && info.PropsSize == 1
               && properties[0] <= lzma2LargestProperty) {
        dictionary = lzma2DictionarySize(properties[0]);
    } else if (info.MethodID == method::Zstd) {
        return zstdWindow(graph, coder);
    }
    return std::min(dictionary, graph.unpackSizes[coder]);
}

std::uint64_t windowSize(const CoderGraph &graph)
{
    std::uint64_t sum = 0;
    for (unsigned i = 0; i < graph.wiring.NumCoders; ++i) {
        sum += windowSize(graph, i);
    }
    return sum;
}

Status checkCoderGraph(const CoderGraph &graph, std::uint64_t memory)
{
    for (unsigned i = 0; i < graph.wiring.NumCoders; ++i) {
        const CSzCoderInfo &coder = graph.wiring.Coders[i];
        const std::uint64_t window = windowSize(graph, i);
        if (!isSupported(coder, graph.properties + coder.PropsOffset) || window > memory) {
            return Status::Unsupported;
        }
        memory -= window;
    }
    return hasCircle(graph.wiring) ? Status::Damaged : Status::Ok;
}

} // namespace sfx
