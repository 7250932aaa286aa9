// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/core/foldercheck.h"

#include "helpers/self-extractor/core/bcj2stream.h"
#include "helpers/self-extractor/core/littleendian.h"
#include "helpers/self-extractor/core/methods.h"

namespace sfx {

namespace {

constexpr std::size_t lzmaProperties = 5;
constexpr unsigned lastLzma2Dictionary = 40;

Status readFolder(const CSzAr &streams, std::uint32_t index, CSzFolder &folder)
{
    const std::size_t begin = streams.FoCodersOffsets[index];
    CSzData data{streams.CodersData + begin, streams.FoCodersOffsets[index + 1] - begin};
    const SRes parsed = SzGetNextFolderItem(&folder, &data);
    if (parsed == SZ_OK) {
        return Status::Ok;
    }
    return parsed == SZ_ERROR_UNSUPPORTED ? Status::Unsupported : Status::Damaged;
}

// A window is no larger than what the coder unpacks to.
std::uint64_t smaller(std::uint64_t dictionary, std::uint64_t unpackSize)
{
    return dictionary < unpackSize ? dictionary : unpackSize;
}

// What a coder's window takes, in bytes.
Status windowOf(const CSzCoderInfo &coder, const std::uint8_t *properties, std::uint64_t unpackSize,
                std::uint64_t &size)
{
    size = 0;
    switch (coder.MethodID) {
    case method::Lzma:
        if (coder.PropsSize != lzmaProperties) {
            return Status::Unsupported;
        }
        size = smaller(readU32(properties + 1), unpackSize);
        return Status::Ok;
    case method::Lzma2:
        if (coder.PropsSize != 1 || properties[0] > lastLzma2Dictionary) {
            return Status::Unsupported;
        }
        size = smaller(std::uint64_t(2 | (properties[0] & 1)) << (properties[0] / 2 + 11),
                       unpackSize);
        return Status::Ok;
    case method::Copy:
    case method::Delta:
    case method::Arm64:
    case method::RiscV:
    case method::X86:
    case method::Bcj2:
    case method::Ppc:
    case method::Ia64:
    case method::Arm:
    case method::ArmThumb:
    case method::Sparc:
        return Status::Ok;
    default:
        return Status::Unsupported;
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

Status checkFolder(const CSzAr &streams, std::uint32_t folderIndex, std::uint64_t memory)
{
    CSzFolder folder;
    const Status read = readFolder(streams, folderIndex, folder);
    if (read != Status::Ok) {
        return read;
    }
    const std::uint8_t *data = streams.CodersData + streams.FoCodersOffsets[folderIndex];
    const UInt64 *unpackSizes
        = streams.CoderUnpackSizes + streams.FoToCoderUnpackSizes[folderIndex];
    for (unsigned i = 0; i < folder.NumCoders; ++i) {
        const CSzCoderInfo &coder = folder.Coders[i];
        const unsigned inputs = coder.MethodID == method::Bcj2 ? Bcj2Stream::inputCount : 1;
        std::uint64_t window = 0;
        const Status status = windowOf(coder, data + coder.PropsOffset, unpackSizes[i], window);
        if (status != Status::Ok || coder.NumStreams != inputs || window > memory) {
            return Status::Unsupported;
        }
        memory -= window;
    }
    return hasCircle(folder) ? Status::Damaged : Status::Ok;
}

} // namespace sfx
