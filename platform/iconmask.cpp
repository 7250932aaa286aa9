// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "platform/iconmask.h"

#include <algorithm>

namespace {

bool hasOpacity(const QImage &image)
{
    for (int y = 0; y < image.height(); ++y) {
        const auto *line = reinterpret_cast<const QRgb *>(image.constScanLine(y));
        if (std::any_of(line, line + image.width(),
                        [](QRgb pixel) { return qAlpha(pixel) != 0; })) {
            return true;
        }
    }
    return false;
}

} // namespace

void useMaskWithoutOpacity(QImage &image, const QImage &mask)
{
    if (mask.size() != image.size() || hasOpacity(image)) {
        return;
    }
    for (int y = 0; y < image.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            if (mask.pixelIndex(x, y) == 0) {
                line[x] |= 0xff000000U;
            }
        }
    }
}
