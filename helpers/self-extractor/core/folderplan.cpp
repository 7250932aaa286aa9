// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/core/folderplan.h"

#include "helpers/self-extractor/core/littleendian.h"
#include "helpers/self-extractor/core/lzmastream.h"
#include "helpers/self-extractor/core/methods.h"

namespace sfx {

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

std::uint64_t windowSize(const FolderPlan &plan, unsigned coder, std::uint64_t unpackSize)
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
    return dictionary < unpackSize ? dictionary : unpackSize;
}

std::uint64_t windowSize(const FolderPlan &plan)
{
    std::uint64_t sum = 0;
    for (unsigned i = 0; i < plan.folder.NumCoders; ++i) {
        sum += windowSize(plan, i, plan.unpackSizes[i]);
    }
    return sum;
}

} // namespace sfx
