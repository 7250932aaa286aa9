// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/decoding/folderplan.h"

#include "helpers/self-extractor/base/littleendian.h"
#include "helpers/self-extractor/decoding/bcj2stream.h"
#include "helpers/self-extractor/decoding/lzmastream.h"
#include "helpers/self-extractor/decoding/methods.h"

#include <algorithm>

namespace sfx {

namespace {

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
        return coder.NumStreams == 1;
    default:
        return false;
    }
}

// The coder that reads this one's output; NumCoders if none does.
unsigned readerOf(const CSzFolder &folder, unsigned coder)
{
    for (unsigned i = 0; i < folder.NumBonds; ++i) {
        if (folder.Bonds[i].OutIndex != coder) {
            continue;
        }
        unsigned reader = 0;
        for (unsigned input = folder.Bonds[i].InIndex;
             reader < folder.NumCoders && input >= folder.Coders[reader].NumStreams; ++reader) {
            input -= folder.Coders[reader].NumStreams;
        }
        return reader;
    }
    return folder.NumCoders;
}

// From every coder the way leads to the main one, whose output nobody reads.
bool hasCircle(const CSzFolder &folder)
{
    for (unsigned i = 0; i < folder.NumCoders; ++i) {
        unsigned at = i;
        for (unsigned steps = 0; at != folder.UnpackStream; ++steps) {
            if (steps == folder.NumCoders || at == folder.NumCoders) {
                return true;
            }
            at = readerOf(folder, at);
        }
    }
    return false;
}

} // namespace

Status readFolderPlan(const CSzAr &streams, std::uint32_t folder, ByteSource &source,
                      std::uint64_t packBase, FolderPlan &plan)
{
    plan = FolderPlan();
    const std::size_t begin = streams.FoCodersOffsets[folder];
    plan.properties = streams.CodersData + begin;
    CSzData data{plan.properties, streams.FoCodersOffsets[folder + 1] - begin};
    const SRes parsed = SzGetNextFolderItem(&plan.folder, &data);
    if (parsed == SZ_ERROR_UNSUPPORTED) {
        return Status::Unsupported;
    }
    if (parsed != SZ_OK || data.Size != 0
        || plan.folder.UnpackStream != streams.FoToMainUnpackSizeIndex[folder]) {
        return Status::Damaged;
    }
    plan.unpackSizes = streams.CoderUnpackSizes + streams.FoToCoderUnpackSizes[folder];
    plan.packPositions = streams.PackPositions + streams.FoStartPackStreamIndex[folder];
    plan.source = &source;
    plan.packBase = packBase;
    return Status::Ok;
}

std::uint64_t windowSize(const FolderPlan &plan, unsigned coder)
{
    const CSzCoderInfo &info = plan.folder.Coders[coder];
    const std::uint8_t *properties = plan.properties + info.PropsOffset;
    std::uint64_t dictionary = 0;
    if (info.MethodID == method::Lzma && info.PropsSize == LZMA_PROPS_SIZE) {
        dictionary = readU32(properties + 1);
    } else if (info.MethodID == method::Lzma2 && info.PropsSize == 1
               && properties[0] <= lzma2LargestProperty) {
        dictionary = lzma2DictionarySize(properties[0]);
    }
    return std::min(dictionary, plan.unpackSizes[coder]);
}

std::uint64_t windowSize(const FolderPlan &plan)
{
    std::uint64_t sum = 0;
    for (unsigned i = 0; i < plan.folder.NumCoders; ++i) {
        sum += windowSize(plan, i);
    }
    return sum;
}

Status checkFolder(const FolderPlan &plan, std::uint64_t memory)
{
    for (unsigned i = 0; i < plan.folder.NumCoders; ++i) {
        const CSzCoderInfo &coder = plan.folder.Coders[i];
        const std::uint64_t window = windowSize(plan, i);
        if (!isSupported(coder, plan.properties + coder.PropsOffset) || window > memory) {
            return Status::Unsupported;
        }
        memory -= window;
    }
    return hasCircle(plan.folder) ? Status::Damaged : Status::Ok;
}

} // namespace sfx
