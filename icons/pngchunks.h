// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/pe/bytes.h"
#include "icons/firstimage.h"

bool beginsAsPng(pe::ByteView data);

// Returns the size of a PNG image (ISO/IEC 15948) if it has all the chunks that a reader needs, in
// the right order and with right check sums. Its compressed data is not decoded.
std::optional<ImageSize> sizeOfPng(pe::ByteView data);
