// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/core/folderchain.h"

#include "helpers/self-extractor/core/bcj2stream.h"
#include "helpers/self-extractor/core/filterstream.h"
#include "helpers/self-extractor/core/lzmastream.h"
#include "helpers/self-extractor/core/methods.h"
#include "helpers/self-extractor/core/readahead.h"

namespace sfx {

namespace {

// Below, in bytes, a thread gains nothing.
constexpr std::uint64_t leastReadAhead = 512 * 1024;
constexpr unsigned noCoder = 0xffffffff;

/// What the stages of one folder are made from; borrowed from the archive.
struct FolderPlan {
    CSzFolder folder;
    const std::uint8_t *properties; // base of CSzCoderInfo::PropsOffset
    const UInt64 *unpackSizes;
    const UInt64 *packPositions;
    ByteSource *source;
    std::uint64_t packBase;
    unsigned aheadCoder; // runs in a thread of its own
};

Status openCoder(const FolderPlan &plan, unsigned coderIndex, Owned<Stream> &result);

// An input is fed by another coder or by a packed stream.
Status openInput(const FolderPlan &plan, unsigned inputIndex, Owned<Stream> &result)
{
    for (unsigned i = 0; i < plan.folder.NumBonds; ++i) {
        if (plan.folder.Bonds[i].InIndex == inputIndex) {
            return openCoder(plan, plan.folder.Bonds[i].OutIndex, result);
        }
    }
    for (unsigned i = 0; i < plan.folder.NumPackStreams; ++i) {
        if (plan.folder.PackStreams[i] == inputIndex) {
            const std::uint64_t begin = plan.packPositions[i];
            result = makeOwned<RangeStream>(*plan.source, plan.packBase + begin,
                                            plan.packPositions[i + 1] - begin);
            return result ? Status::Ok : Status::NoMemory;
        }
    }
    return Status::Damaged;
}

// Stages whose open() takes the coder's property bytes.
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

template <typename Decoder>
Status openDecoder(const FolderPlan &plan, unsigned coderIndex, Owned<Stream> input,
                   Owned<Stream> &result)
{
    const CSzCoderInfo &coder = plan.folder.Coders[coderIndex];
    const Status status
        = openStage(makeOwned<Decoder>(std::move(input), plan.unpackSizes[coderIndex]), result,
                    plan.properties + coder.PropsOffset, coder.PropsSize);
    if (status != Status::Ok || coderIndex != plan.aheadCoder) {
        return status;
    }
    return openStage(makeOwned<ReadAhead>(std::move(result)), result);
}

Status openBcj2(const FolderPlan &plan, unsigned firstInput, std::uint64_t unpackSize,
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
Status openCoder(const FolderPlan &plan, unsigned coderIndex, Owned<Stream> &result)
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
        return openDecoder<LzmaStream>(plan, coderIndex, std::move(input), result);
    case method::Lzma2:
        return openDecoder<Lzma2Stream>(plan, coderIndex, std::move(input), result);
    default:
        return openStage(makeOwned<FilterStream>(std::move(input)), result, coder.MethodID,
                         properties, size);
    }
}

// The one that costs the most time: the others go well beside the writing of files.
unsigned chooseAheadCoder(const FolderPlan &plan)
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

Status openFolder(const CSzAr &streams, std::uint32_t folderIndex, ByteSource &source,
                  std::uint64_t packBase, Owned<Stream> &result)
{
    FolderPlan plan{};
    const std::size_t begin = streams.FoCodersOffsets[folderIndex];
    plan.properties = streams.CodersData + begin;
    CSzData data{plan.properties, streams.FoCodersOffsets[folderIndex + 1] - begin};
    const SRes parsed = SzGetNextFolderItem(&plan.folder, &data);
    if (parsed == SZ_ERROR_UNSUPPORTED) {
        return Status::Unsupported;
    }
    if (parsed != SZ_OK || data.Size != 0
        || plan.folder.UnpackStream != streams.FoToMainUnpackSizeIndex[folderIndex]) {
        return Status::Damaged;
    }
    plan.unpackSizes = streams.CoderUnpackSizes + streams.FoToCoderUnpackSizes[folderIndex];
    plan.packPositions = streams.PackPositions + streams.FoStartPackStreamIndex[folderIndex];
    plan.source = &source;
    plan.packBase = packBase;
    plan.aheadCoder = chooseAheadCoder(plan);
    return openCoder(plan, plan.folder.UnpackStream, result);
}

} // namespace sfx
