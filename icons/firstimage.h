// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/pe/bytes.h"

#include <optional>

struct ImageSize
{
    int width = 0;
    int height = 0;
};

// Returns the size of the first image of an ICO file if that image is complete. This is a check
// without decoding: a bitmap must have all its rows, and a PNG all its chunks, with right check sums
// where they matter. The verdict is that of Qt's ICO reader, which the window uses, except that a
// PNG passes if its compressed data is wrong in spite of a right check sum, and does not pass if it
// is damaged after its pixels.
std::optional<ImageSize> sizeOfFirstImage(pe::ByteView file);
