// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/pe/bytes.h"
#include "helpers/pe/result.h"

#include <vector>

namespace pe {

// One image of an icon. `data` points into the buffer in which the image was found.
struct IconImage
{
    std::uint32_t width = 0; // pixels, as the image itself says
    std::uint32_t height = 0;
    std::uint16_t bitCount = 0;  // bits per pixel, as the image itself says
    std::uint8_t colorCount = 0; // colours of the palette; 0 for 256 and more
    ByteView data; // a PNG file, or a BITMAPINFOHEADER with the bitmaps of colour and mask
};

// Reads size and depth from the image's own bytes. Fails if the image is neither a PNG nor a bitmap.
Result<IconImage> describeIconImage(ByteView data);

// Real icons have far fewer images. The limit keeps the work on a hostile file small.
constexpr std::uint32_t maxIconImages = 1024;

// The images of an ICO file (ICONDIR, ICONDIRENTRY of the ICO format), in the file's order: at least
// one and at most maxIconImages. They point into `file`, which must outlive them. Fails if an image
// lies outside the file, or if the images' sizes add up to more than the file's: then images overlap.
Result<std::vector<IconImage>> parseIcoFile(ByteView file);

// The largest size that the content of an icon group can have.
constexpr std::uint32_t maxIconGroupSize = 6 + 14 * maxIconImages;

// Real icons are smaller. The resource editor refuses larger files.
constexpr std::uint64_t maxIcoFileSize = 12U << 20;

// Makes an ICO file with these images: at least one and at most maxIconImages.
Bytes icoFileOf(const std::vector<IconImage> &images);

// Makes the content of an icon group (RT_GROUP_ICON: GRPICONDIR, GRPICONDIRENTRY). The images are stored
// as RT_ICON resources; ids[i] is the id of images[i].
Bytes iconGroupOf(const std::vector<IconImage> &images, const std::vector<std::uint16_t> &ids);

// The ids of the RT_ICON resources that an icon group refers to. If the group is cut off, only the ids
// before the cut.
std::vector<std::uint16_t> imageIdsOfGroup(ByteView group);

} // namespace pe
