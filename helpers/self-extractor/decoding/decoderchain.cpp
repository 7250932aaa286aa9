// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/decoding/decoderchain.h"

#include "helpers/self-extractor/decoding/bcj2stream.h"
#include "helpers/self-extractor/decoding/filterstream.h"
#include "helpers/self-extractor/decoding/lzmastream.h"
#include "helpers/self-extractor/decoding/methods.h"
#include "helpers/self-extractor/decoding/readahead.h"
#include "helpers/self-extractor/decoding/zstdmethod.h"

namespace sfx {

namespace {

// A thread for fewer bytes gains nothing.
constexpr std::uint64_t leastReadAhead = 512 * 1024;
constexpr unsigned noCoder = 0xffffffff;

// A coder graph, and the coder that runs in another thread.
struct AheadGraph : CoderGraph
{
    unsigned aheadCoder = noCoder;
};

Status openCoder(const AheadGraph &graph, unsigned coderIndex, Owned<Stream> &result);

// Opens a new stream, with the coder's property bytes if it takes any.
template <typename Stage, typename... Arguments>
Status openStage(Owned<Stage> stage, Owned<Stream> &result, Arguments... arguments)
{
    if (!stage) {
        return Status::NoMemory;
    }
    const Status status = stage->open(arguments...);
    result = Owned<Stream>(std::move(stage));
    return status;
}

// An input is fed by another coder or by a packed stream.
Status openInput(const AheadGraph &graph, unsigned inputIndex, Owned<Stream> &result)
{
    for (unsigned i = 0; i < graph.wiring.NumBonds; ++i) {
        if (graph.wiring.Bonds[i].InIndex == inputIndex) {
            return openCoder(graph, graph.wiring.Bonds[i].OutIndex, result);
        }
    }
    std::uint64_t offset = 0;
    std::uint64_t size = 0;
    return findPackedStream(graph, inputIndex, offset, size)
        ? openStage(makeOwned<RangeStream>(*graph.source, offset, size), result)
        : Status::Damaged;
}

template <typename Decoder>
Status openLzma(const AheadGraph &graph, unsigned coderIndex, Owned<Stream> input,
                Owned<WindowStream> &result)
{
    const CSzCoderInfo &coder = graph.wiring.Coders[coderIndex];
    auto decoder = makeOwned<Decoder>(std::move(input), graph.unpackSizes[coderIndex]);
    if (!decoder) {
        return Status::NoMemory;
    }
    const Status status
        = decoder->open(graph.properties + coder.PropsOffset, coder.PropsSize,
                        coderIndex == graph.aheadCoder ? ReadAhead::usefulWindow : 0);
    result = std::move(decoder);
    return status;
}

// Opens a decoder that has a window, and lets it run ahead if it was chosen for that.
Status openDecoder(const AheadGraph &graph, unsigned coderIndex, Owned<Stream> input,
                   Owned<Stream> &result)
{
    Owned<WindowStream> decoder;
    const std::uint32_t id = graph.wiring.Coders[coderIndex].MethodID;
    const Status status = id == method::Lzma
        ? openLzma<LzmaStream>(graph, coderIndex, std::move(input), decoder)
        : id == method::Lzma2 ? openLzma<Lzma2Stream>(graph, coderIndex, std::move(input), decoder)
                              : openZstd(graph, coderIndex, std::move(input), decoder);
    if (status == Status::Ok && coderIndex == graph.aheadCoder) {
        return openStage(makeOwned<ReadAhead>(std::move(decoder)), result);
    }
    result = std::move(decoder);
    return status;
}

Status openBcj2(const AheadGraph &graph, unsigned firstInput, std::uint64_t unpackSize,
                Owned<Stream> &result)
{
    Owned<Stream> inputs[Bcj2Stream::inputCount];
    for (unsigned i = 0; i < Bcj2Stream::inputCount; ++i) {
        const Status status = openInput(graph, firstInput + i, inputs[i]);
        if (status != Status::Ok) {
            return status;
        }
    }
    return openStage(makeOwned<Bcj2Stream>(inputs, unpackSize), result);
}

// The recursion ends: a coder's output is used at most once, and the main coder's never (checked
// when the graph is read). Seen from the main coder, the graph is a tree of at most four coders.
Status openCoder(const AheadGraph &graph, unsigned coderIndex, Owned<Stream> &result)
{
    const CSzCoderInfo &coder = graph.wiring.Coders[coderIndex];
    const std::uint64_t unpackSize = graph.unpackSizes[coderIndex];
    const std::uint8_t *properties = graph.properties + coder.PropsOffset;
    const std::size_t size = coder.PropsSize;
    const unsigned input = firstInput(graph.wiring, coderIndex);
    if (coder.MethodID == method::Bcj2) {
        return coder.NumStreams == Bcj2Stream::inputCount && size == 0
            ? openBcj2(graph, input, unpackSize, result)
            : Status::Unsupported;
    }
    Owned<Stream> packed;
    if (coder.NumStreams != 1) {
        return Status::Unsupported;
    }
    const Status status = openInput(graph, input, packed);
    if (status != Status::Ok) {
        return status;
    }
    switch (coder.MethodID) {
    case method::Copy:
        result = std::move(packed);
        return Status::Ok;
    case method::Lzma:
    case method::Lzma2:
    case method::Zstd:
        return openDecoder(graph, coderIndex, std::move(packed), result);
    default:
        return openStage(makeOwned<FilterStream>(std::move(packed)), result, coder.MethodID,
                         properties, size);
    }
}

// The decoder with the most output takes the most time. The others are fast enough beside the
// writing of files.
unsigned chooseAheadCoder(const AheadGraph &graph)
{
    unsigned chosen = noCoder;
    std::uint64_t most = leastReadAhead - 1;
    for (unsigned i = 0; i < graph.wiring.NumCoders; ++i) {
        if (windowSize(graph, i) != 0 && graph.unpackSizes[i] > most) {
            most = graph.unpackSizes[i];
            chosen = i;
        }
    }
    return chosen;
}

} // namespace

Status openDecoderChain(const CoderGraph &graph, bool readsAhead, Owned<Stream> &result)
{
    AheadGraph aheadGraph{graph, noCoder};
    if (readsAhead) {
        aheadGraph.aheadCoder = chooseAheadCoder(aheadGraph);
    }
    return openCoder(aheadGraph, graph.wiring.UnpackStream, result);
}

} // namespace sfx
