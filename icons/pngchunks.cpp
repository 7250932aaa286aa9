// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "icons/pngchunks.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace {

constexpr std::array<std::uint8_t, 8> signature = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1a, '\n'};
constexpr std::uint32_t largestNumber = 0x7fffffff;     // of the format
constexpr std::uint64_t largestPixelBytes = 256U << 20; // Qt's readers refuse larger images, too

std::uint32_t readBigEndian32(pe::ByteView bytes, std::size_t position)
{
    return (static_cast<std::uint32_t>(bytes[position]) << 24)
        | (static_cast<std::uint32_t>(bytes[position + 1]) << 16)
        | (static_cast<std::uint32_t>(bytes[position + 2]) << 8) | bytes[position + 3];
}

constexpr std::array<std::uint32_t, 256> makeCrcTable()
{
    std::array<std::uint32_t, 256> table = {};
    for (std::uint32_t i = 0; i < 256; ++i) {
        std::uint32_t value = i;
        for (int bit = 0; bit < 8; ++bit) {
            value = (value & 1U) != 0 ? 0xedb88320U ^ (value >> 1) : value >> 1;
        }
        table[i] = value;
    }
    return table;
}

std::uint32_t checkSum(pe::ByteView bytes)
{
    static constexpr auto table = makeCrcTable();
    std::uint32_t sum = 0xffffffff;
    for (const std::uint8_t byte : bytes) {
        sum = table[(sum ^ byte) & 0xffU] ^ (sum >> 8);
    }
    return ~sum;
}

struct Chunk
{
    std::string_view type;
    pe::ByteView data;
    bool isCritical = false;
    bool isRight = false; // its check sum
};

// Takes the next chunk off `rest`. Returns nothing if it is cut off or its type has no letters.
std::optional<Chunk> takeChunk(pe::ByteView &rest)
{
    constexpr std::size_t frame = 12; // length, type, check sum
    if (rest.size() < frame) {
        return std::nullopt;
    }
    const std::uint32_t length = readBigEndian32(rest, 0);
    if (length > largestNumber || length > rest.size() - frame) {
        return std::nullopt;
    }
    Chunk chunk;
    chunk.type = {reinterpret_cast<const char *>(rest.data()) + 4, 4};
    const auto isLetter = [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
    };
    if (!std::all_of(chunk.type.begin(), chunk.type.end(), isLetter)) {
        return std::nullopt;
    }
    chunk.data = rest.subspan(8, length);
    chunk.isCritical = chunk.type.front() <= 'Z';
    chunk.isRight = checkSum(rest.subspan(4, 4 + length)) == readBigEndian32(rest, 8 + length);
    rest = rest.subspan(frame + length);
    return chunk;
}

struct Header
{
    ImageSize size;
    bool hasPalette = false; // its pixels are numbers in a palette
};

bool isDepthOfType(std::uint8_t depth, std::uint8_t type)
{
    const bool small = depth == 1 || depth == 2 || depth == 4;
    switch (type) {
    case 0: // grey
        return small || depth == 8 || depth == 16;
    case 3: // palette
        return small || depth == 8;
    case 2: // colours; 4 and 6 have opacity, too
    case 4:
    case 6:
        return depth == 8 || depth == 16;
    default:
        return false;
    }
}

std::optional<Header> readHeader(const Chunk &chunk)
{
    if (chunk.type != "IHDR" || chunk.data.size() != 13 || !chunk.isRight) {
        return std::nullopt;
    }
    const std::uint32_t width = readBigEndian32(chunk.data, 0);
    const std::uint32_t height = readBigEndian32(chunk.data, 4);
    const std::uint8_t depth = chunk.data[8];
    const std::uint8_t type = chunk.data[9];
    if (width == 0 || height == 0 || width > 1000000 || height > 1000000
        || !isDepthOfType(depth, type) || chunk.data[10] != 0 || chunk.data[11] != 0
        || chunk.data[12] > 1) {
        return std::nullopt;
    }
    const std::uint64_t bytes = std::uint64_t(width) * height * (depth == 16 ? 8 : 4);
    if (bytes > largestPixelBytes) {
        return std::nullopt;
    }
    return Header{{static_cast<int>(width), static_cast<int>(height)}, type == 3};
}

} // namespace

bool beginsAsPng(pe::ByteView data)
{
    return data.size() >= signature.size()
        && std::equal(signature.begin(), signature.end(), data.begin());
}

std::optional<ImageSize> sizeOfPng(pe::ByteView data)
{
    if (!beginsAsPng(data)) {
        return std::nullopt;
    }
    pe::ByteView rest = data.subspan(signature.size());
    const auto first = takeChunk(rest);
    const auto header = first ? readHeader(*first) : std::nullopt;
    if (!header) {
        return std::nullopt;
    }
    bool hasPalette = false;
    bool hasData = false;
    while (const auto chunk = takeChunk(rest)) {
        if (chunk->isCritical && !chunk->isRight) {
            return std::nullopt;
        }
        if (chunk->type == "IEND") {
            return hasData ? std::optional(header->size) : std::nullopt;
        }
        if (chunk->type == "PLTE") {
            hasPalette = !chunk->data.empty() && chunk->data.size() % 3 == 0;
        } else if (chunk->type == "IDAT") {
            hasData = hasPalette || !header->hasPalette;
        } else if (chunk->isCritical) {
            return std::nullopt; // nobody knows how to show it
        }
    }
    return std::nullopt;
}
