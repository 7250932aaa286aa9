// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/decoding/folderchain.h"

#include "helpers/self-extractor/decoding/bcj2stream.h"
#include "helpers/self-extractor/decoding/filterstream.h"
#include "helpers/self-extractor/decoding/lzmastream.h"
#include "helpers/self-extractor/decoding/methods.h"
#include "helpers/self-extractor/decoding/readahead.h"

namespace sfx {

namespace {

// Below, in bytes, a thread gains nothing.
constexpr std::uint64_t leastReadAhead = 512 * 1024;
constexpr unsigned noCoder = 0xffffffff;

/// A folder's plan, and the coder that runs in a thread of its own.
struct Wiring : FolderPlan
{
    unsigned aheadCoder = noCoder;
};

Status openCoder(const Wiring &plan, unsigned coderIndex, Owned<Stream> &result);

// Some take the coder's property bytes.
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
Status openInput(const Wiring &plan, unsigned inputIndex, Owned<Stream> &result)
{
    for (unsigned i = 0; i < plan.folder.NumBonds; ++i) {
        if (plan.folder.Bonds[i].InIndex == inputIndex) {
            return openCoder(plan, plan.folder.Bonds[i].OutIndex, result);
        }
    }
    for (unsigned i = 0; i < plan.folder.NumPackStreams; ++i) {
        if (plan.folder.PackStreams[i] == inputIndex) {
            const std::uint64_t begin = plan.packPositions[i];
            return openStage(makeOwned<RangeStream>(*plan.source, plan.packBase + begin,
                                                    plan.packPositions[i + 1] - begin),
                             result);
        }
    }
    return Status::Damaged;
}

template <typename Decoder>
Status openDecoder(const Wiring &plan, unsigned coderIndex, Owned<Stream> input,
                   std::uint64_t unpackSize, Owned<Stream> &result)
{
    const CSzCoderInfo &coder = plan.folder.Coders[coderIndex];
    Owned<Decoder> decoder = makeOwned<Decoder>(std::move(input), unpackSize);
    if (!decoder) {
        return Status::NoMemory;
    }
    const bool runsAhead = coderIndex == plan.aheadCoder;
    const Status status = decoder->open(plan.properties + coder.PropsOffset, coder.PropsSize,
                                        runsAhead ? ReadAhead::usefulWindow : 0);
    if (status == Status::Ok && runsAhead) {
        return openStage(makeOwned<ReadAhead>(std::move(decoder)), result);
    }
    result = std::move(decoder);
    return status;
}

Status openBcj2(const Wiring &plan, unsigned firstInput, std::uint64_t unpackSize,
                Owned<Stream> &result)
{
    Owned<Stream> inputs[Bcj2Stream::inputCount];
    for (unsigned i = 0; i < Bcj2Stream::inputCount; ++i) {
        const Status status = openInput(plan, firstInput + i, inputs[i]);
        if (status != Status::Ok) {
            return status;
        }
    }
    return openStage(makeOwned<Bcj2Stream>(inputs, unpackSize), result);
}

// The recursion ends: a coder's output is used once at most, and the main coder's never (checked
// where the folder is parsed), so the wiring seen from the main coder is a tree of four at most.
Status openCoder(const Wiring &plan, unsigned coderIndex, Owned<Stream> &result)
{
    const CSzCoderInfo &coder = plan.folder.Coders[coderIndex];
    const std::uint64_t unpackSize = plan.unpackSizes[coderIndex];
    const std::uint8_t *properties = plan.properties + coder.PropsOffset;
    const std::size_t size = coder.PropsSize;
    unsigned firstInput = 0;
    for (unsigned i = 0; i < coderIndex; ++i) {
        firstInput += plan.folder.Coders[i].NumStreams;
    }
    if (coder.MethodID == method::Bcj2) {
        return coder.NumStreams == Bcj2Stream::inputCount && size == 0
            ? openBcj2(plan, firstInput, unpackSize, result)
            : Status::Unsupported;
    }
    Owned<Stream> input;
    if (coder.NumStreams != 1) {
        return Status::Unsupported;
    }
    const Status status = openInput(plan, firstInput, input);
    if (status != Status::Ok) {
        return status;
    }
    switch (coder.MethodID) {
    case method::Copy:
        result = std::move(input);
        return Status::Ok;
    case method::Lzma:
        return openDecoder<LzmaStream>(plan, coderIndex, std::move(input), unpackSize, result);
    case method::Lzma2:
        return openDecoder<Lzma2Stream>(plan, coderIndex, std::move(input), unpackSize, result);
    default:
        return openStage(makeOwned<FilterStream>(std::move(input)), result, coder.MethodID,
                         properties, size);
    }
}

// The one that costs the most time: the others go well beside the writing of files.
unsigned chooseAheadCoder(const Wiring &plan)
{
    unsigned chosen = noCoder;
    std::uint64_t most = leastReadAhead - 1;
    for (unsigned i = 0; i < plan.folder.NumCoders; ++i) {
        const std::uint32_t coder = plan.folder.Coders[i].MethodID;
        if ((coder == method::Lzma || coder == method::Lzma2) && plan.unpackSizes[i] > most) {
            most = plan.unpackSizes[i];
            chosen = i;
        }
    }
    return chosen;
}

} // namespace

Status openFolder(const FolderPlan &plan, bool readsAhead, Owned<Stream> &result)
{
    Wiring wiring{plan, noCoder};
    if (readsAhead) {
        wiring.aheadCoder = chooseAheadCoder(wiring);
    }
    return openCoder(wiring, plan.folder.UnpackStream, result);
}

} // namespace sfx
