// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QImage>

// If all alpha values of `image` (Format_ARGB32) are 0, makes it opaque where `mask` (one bit for
// each pixel) is 0: icons of up to 24 bits have a mask instead of alpha values. Does not change any
// other image, nor an image whose mask has another size.
void useMaskWithoutOpacity(QImage &image, const QImage &mask);
