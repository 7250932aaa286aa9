// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/pe/bytes.h"
#include "helpers/pe/result.h"

#include <vector>

namespace pe {

// One image of an icon, borrowed from the buffer that it was found in.
struct IconImage
{
    std::uint32_t width = 0; // pixels, as the image itself says
    std::uint32_t height = 0;
    std::uint16_t bitCount = 0;  // bits a pixel, as the image itself says
    std::uint8_t colorCount = 0; // colours of the palette; 0 for 256 and more
    ByteView data; // a PNG file, or a BITMAPINFOHEADER with the bitmaps of colour and mask
};

// What an image's own bytes say about it; `data` and the measures are set. An image that is neither
// a PNG nor a bitmap is an error.
Result<IconImage> describeIconImage(ByteView data);

// Far above any icon that is drawn; keeps the work on a hostile file small.
constexpr std::uint32_t maxIconImages = 1024;

// The images of an ICO file (ICONDIR, ICONDIRENTRY of the ICO format), in its order; never empty
// and at most maxIconImages. Everything that the directory says is checked against the buffer,
// which must outlive the result. Together the images are no longer than the file: more can only be
// said of shared bytes.
Result<std::vector<IconImage>> parseIcoFile(ByteView file);

// The size of an icon group's content at most.
constexpr std::uint32_t maxIconGroupSize = 6 + 14 * maxIconImages;

// An ICO file with just this image.
Bytes icoFileOf(const IconImage &image);

// The content of an icon group (RT_GROUP_ICON: GRPICONDIR, GRPICONDIRENTRY) over the images, which
// are stored as RT_ICON under the ids, one for each.
Bytes iconGroupOf(const std::vector<IconImage> &images, const std::vector<std::uint16_t> &ids);

// The ids of RT_ICON that an icon group refers to. A group that ends early gives those it has.
std::vector<std::uint16_t> imageIdsOfGroup(ByteView group);

} // namespace pe
