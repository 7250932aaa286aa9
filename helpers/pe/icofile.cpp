// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/pe/icofile.h"

#include <algorithm>
#include <array>
#include <string>

namespace pe {

namespace {

constexpr std::size_t directorySize = 6;
constexpr std::size_t fileEntrySize = 16;
constexpr std::size_t groupEntrySize = 14;
constexpr std::array<std::uint8_t, 8> pngSignature = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1a, '\n'};

Error badIcon(std::string what)
{
    return {ErrorKind::BadIcon, std::move(what)};
}

std::uint32_t readBigEndian32(ByteView bytes, std::size_t position)
{
    return (static_cast<std::uint32_t>(bytes[position]) << 24)
        | (static_cast<std::uint32_t>(bytes[position + 1]) << 16)
        | (static_cast<std::uint32_t>(bytes[position + 2]) << 8) | bytes[position + 3];
}

bool isPng(ByteView data)
{
    return data.size() >= 33 && std::equal(pngSignature.begin(), pngSignature.end(), data.begin());
}

// Bits per pixel of a PNG, from the bit depth and colour type of its IHDR chunk.
std::uint16_t pngBitCount(std::uint8_t depth, std::uint8_t colorType)
{
    switch (colorType) {
    case 2:
        return static_cast<std::uint16_t>(depth * 3);
    case 4:
        return static_cast<std::uint16_t>(depth * 2);
    case 6:
        return static_cast<std::uint16_t>(depth * 4);
    default:
        return depth;
    }
}

std::uint8_t sizeByte(std::uint32_t pixels)
{
    return pixels >= 256 ? 0 : static_cast<std::uint8_t>(pixels);
}

// The eight bytes that ICONDIRENTRY and GRPICONDIRENTRY begin with.
void appendMeasures(Bytes &out, const IconImage &image)
{
    out.push_back(sizeByte(image.width));
    out.push_back(sizeByte(image.height));
    out.push_back(image.colorCount);
    out.push_back(0);
    out.insert(out.end(), {1, 0, 0, 0});
    write16(out, out.size() - 2, image.bitCount);
}

void append16(Bytes &out, std::uint16_t value)
{
    out.resize(out.size() + 2);
    write16(out, out.size() - 2, value);
}

void append32(Bytes &out, std::uint32_t value)
{
    out.resize(out.size() + 4);
    write32(out, out.size() - 4, value);
}

void appendDirectory(Bytes &out, std::size_t count)
{
    append16(out, 0);
    append16(out, 1);
    append16(out, static_cast<std::uint16_t>(count));
}

} // namespace

Result<IconImage> describeIconImage(ByteView data)
{
    IconImage image;
    image.data = data;
    if (isPng(data)) {
        image.width = readBigEndian32(data, 16);
        image.height = readBigEndian32(data, 20);
        image.bitCount = pngBitCount(data[24], data[25]);
    } else if (data.size() >= 40 && read32(data, 0) >= 40 && read32(data, 0) <= 124) {
        image.width = read32(data, 4);
        image.height = read32(data, 8) / 2; // colour and mask bitmap, one above the other
        image.bitCount = read16(data, 14);
        if (image.bitCount < 8) {
            image.colorCount = static_cast<std::uint8_t>(1U << image.bitCount);
        }
    } else {
        return badIcon("an image is neither a PNG nor a bitmap");
    }
    if (image.width == 0 || image.height == 0 || image.width > 0x7fff || image.height > 0x7fff) {
        return badIcon("an image has an invalid width or height");
    }
    return image;
}

Result<std::vector<IconImage>> parseIcoFile(ByteView file)
{
    if (file.size() < directorySize || read16(file, 0) != 0 || read16(file, 2) != 1) {
        return badIcon("not an icon file");
    }
    const std::size_t count = read16(file, 4);
    if (count == 0) {
        return badIcon("the icon file has no image");
    }
    if (count > maxIconImages) {
        return badIcon("the icon file has too many images");
    }
    const std::size_t imagesBegin = directorySize + fileEntrySize * count;
    if (imagesBegin > file.size()) {
        return badIcon("the icon file ends inside its directory");
    }
    std::vector<IconImage> images;
    std::size_t left = file.size() - imagesBegin;
    for (std::size_t i = 0; i < count; ++i) {
        const ByteView entry = file.subspan(directorySize + fileEntrySize * i, fileEntrySize);
        const std::uint32_t size = read32(entry, 8);
        const std::uint32_t offset = read32(entry, 12);
        if (offset < imagesBegin || !fits(offset, size, file.size())) {
            return badIcon("image " + std::to_string(i + 1) + " lies outside the icon file");
        }
        if (size > left) {
            return badIcon("images in the icon file overlap");
        }
        left -= size;
        auto image = describeIconImage(file.subspan(offset, size));
        if (image.hasError()) {
            return image.error();
        }
        images.push_back(image.value());
    }
    return images;
}

Bytes icoFileOf(const std::vector<IconImage> &images)
{
    Bytes out;
    appendDirectory(out, images.size());
    std::size_t position = directorySize + fileEntrySize * images.size();
    for (const IconImage &image : images) {
        appendMeasures(out, image);
        append32(out, static_cast<std::uint32_t>(image.data.size()));
        append32(out, static_cast<std::uint32_t>(position));
        position += image.data.size();
    }
    out.reserve(position);
    for (const IconImage &image : images) {
        out.insert(out.end(), image.data.begin(), image.data.end());
    }
    return out;
}

Bytes iconGroupOf(const std::vector<IconImage> &images, const std::vector<std::uint16_t> &ids)
{
    Bytes out;
    out.reserve(directorySize + groupEntrySize * images.size());
    appendDirectory(out, images.size());
    for (std::size_t i = 0; i < images.size(); ++i) {
        appendMeasures(out, images[i]);
        append32(out, static_cast<std::uint32_t>(images[i].data.size()));
        append16(out, ids[i]);
    }
    return out;
}

std::vector<std::uint16_t> imageIdsOfGroup(ByteView group)
{
    std::vector<std::uint16_t> ids;
    if (group.size() < directorySize) {
        return ids;
    }
    const std::size_t count
        = std::min<std::size_t>(read16(group, 4), (group.size() - directorySize) / groupEntrySize);
    for (std::size_t i = 0; i < count; ++i) {
        ids.push_back(read16(group, directorySize + groupEntrySize * i + 12));
    }
    return ids;
}

} // namespace pe
