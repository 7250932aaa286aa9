// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/decoding/zstdheader.h"

#include "helpers/self-extractor/base/littleendian.h"

#include <algorithm>

namespace sfx {

namespace {

constexpr std::uint32_t frameMagic = 0xfd2fb528;
constexpr std::uint64_t unknownSize = UINT64_MAX;

struct FrameHeader
{
    std::uint64_t window = 0;
    std::uint64_t content = unknownSize;
};

// RFC 8878, section 3.1.1.1. Returns false if this is not a frame with data, or not all of its
// header.
bool readFrameHeader(const std::uint8_t *data, std::size_t size, FrameHeader &header)
{
    static constexpr std::uint8_t dictionaryIdSizes[] = {0, 1, 2, 4};
    if (size < 6 || readU32(data) != frameMagic) {
        return false;
    }
    const unsigned descriptor = data[4];
    const bool hasWindow = (descriptor & 0x20) == 0; // otherwise the content is the window
    const std::size_t contentAt = (hasWindow ? 6u : 5u) + dictionaryIdSizes[descriptor & 3];
    std::size_t contentBytes = std::size_t(1) << (descriptor >> 6);
    if (contentBytes == 1 && hasWindow) {
        contentBytes = 0;
    }
    if (size < contentAt + contentBytes) {
        return false;
    }
    if (contentBytes != 0) {
        header.content = contentBytes == 2 ? 256 : 0;
        for (std::size_t i = 0; i < contentBytes; ++i) {
            header.content += static_cast<std::uint64_t>(data[contentAt + i]) << (8 * i);
        }
    }
    header.window = hasWindow
        ? static_cast<std::uint64_t>(8 + (data[5] & 7)) << (7 + (data[5] >> 3))
        : header.content;
    return true;
}

} // namespace

std::uint64_t zstdWindowSize(const std::uint8_t *begin, std::size_t size, std::uint64_t unpackSize)
{
    FrameHeader first;
    const bool holdsAll = readFrameHeader(begin, size, first) && first.content >= unpackSize;
    return std::min(holdsAll ? first.window : maxZstdWindow, unpackSize);
}

} // namespace sfx
