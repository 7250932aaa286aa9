// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QImage>

// Makes `image` (Format_ARGB32) opaque where `mask` (one bit a pixel) is clear, if the image has no opacity at
// all: icons of up to 24 bits have a mask instead. Any other image stays as it is, as it does when the mask
// has another size.
void useMaskWithoutOpacity(QImage &image, const QImage &mask);
