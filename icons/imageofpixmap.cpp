// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "icons/imageofpixmap.h"

#include <QRgba64>

#include <algorithm>

namespace {

// Looked at with 16 bits a channel: a pixel may be short of opaque by less than 8 bits can tell.
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
    // With a colour table, the channel is what the table says.
    const bool alpha = image.hasAlphaChannel()
        && (image.colorCount() > 0 || hasTranslucentPixel(image));
    return image.convertToFormat(alpha ? QImage::Format_ARGB32_Premultiplied
                                       : QImage::Format_RGB32);
}
