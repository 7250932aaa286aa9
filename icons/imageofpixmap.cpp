// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "icons/imageofpixmap.h"

#include <QRgba64>

#include <algorithm>

namespace {

// Compares with 16 bits for each channel: with 8 bits, an almost opaque pixel would look opaque.
bool hasTranslucentPixel(const QImage &image)
{
    const QImage pixels = image.convertToFormat(QImage::Format_RGBA64);
    for (int y = 0; y < pixels.height(); ++y) {
        const auto *line = reinterpret_cast<const QRgba64 *>(pixels.constScanLine(y));
        if (std::any_of(line, line + pixels.width(), [](QRgba64 p) { return !p.isOpaque(); })) {
            return true;
        }
    }
    return false;
}

} // namespace

QImage imageOfPixmap(const QImage &image)
{
    // With a colour table, hasAlphaChannel() is decided by the table alone.
    const bool alpha = image.hasAlphaChannel()
        && (image.colorCount() > 0 || hasTranslucentPixel(image));
    return image.convertToFormat(alpha ? QImage::Format_ARGB32_Premultiplied
                                       : QImage::Format_RGB32);
}
