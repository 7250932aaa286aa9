// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "icons/firstimage.h"

#include "icons/pngchunks.h"

namespace {

constexpr std::size_t directorySize = 6;
constexpr std::size_t entrySize = 16;
constexpr std::size_t bitmapHeaderSize = 40;
constexpr int largestSide = 256; // of a bitmap

// The bytes of one row: rows end at multiples of four bytes.
std::size_t rowSize(int width, unsigned bits)
{
    return (std::size_t(width) * bits + 31) / 32 * 4;
}

// A side from the directory, which says 0 for 256 pixels; then the image's own number is the right one.
int side(std::uint8_t ofEntry, std::int64_t ofImage)
{
    if (ofEntry != 0) {
        return ofEntry;
    }
    return ofImage >= 1 && ofImage <= largestSide ? static_cast<int>(ofImage) : 0;
}

// `data` is everything from the image to the end of the file: a bitmap's length follows from its header.
std::optional<ImageSize> sizeOfBitmap(pe::ByteView entry, pe::ByteView data)
{
    if (data.size() < bitmapHeaderSize) {
        return std::nullopt;
    }
    const unsigned own = pe::read16(data, 14);
    const unsigned bits = own != 0 ? own : pe::read16(entry, 6);
    if (bits != 1 && bits != 4 && bits != 8 && bits != 24 && bits != 32) {
        return std::nullopt; // Qt's reader shows no icons of 16 bits
    }
    const auto number = [&data](std::size_t position) {
        return static_cast<std::int64_t>(static_cast<std::int32_t>(pe::read32(data, position)));
    };
    const ImageSize size{side(entry[0], number(4)), side(entry[1], number(8) / 2)};
    if (size.width == 0 || size.height == 0) {
        return std::nullopt;
    }
    unsigned rowBits = bits;
    std::size_t needed = bitmapHeaderSize;
    if (bits <= 8) {
        const std::uint32_t used = pe::read32(data, 32);
        const std::uint32_t colours = used != 0 ? used : 1U << bits;
        if (colours > 256) {
            return std::nullopt;
        }
        if (bits == 1 && colours != 2) {
            rowBits = 8; // so Qt's reader takes them
        }
        needed += 4 * colours + std::size_t(size.height) * rowSize(size.width, 1);
    }
    needed += std::size_t(size.height) * rowSize(size.width, rowBits);
    return needed <= data.size() ? std::optional(size) : std::nullopt;
}

} // namespace

std::optional<ImageSize> sizeOfFirstImage(pe::ByteView file)
{
    if (file.size() < directorySize + entrySize || pe::read16(file, 4) == 0) {
        return std::nullopt;
    }
    const pe::ByteView entry = file.subspan(directorySize, entrySize);
    const std::uint32_t length = pe::read32(entry, 8);
    const std::uint32_t offset = pe::read32(entry, 12);
    if (offset > file.size() || length > file.size() - offset) {
        return std::nullopt;
    }
    const pe::ByteView data = file.subspan(offset);
    return beginsAsPng(data) ? sizeOfPng(data.first(length)) : sizeOfBitmap(entry, data);
}
