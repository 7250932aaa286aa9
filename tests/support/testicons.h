// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/iconsource.h"

#include <QBuffer>
#include <QColor>
#include <QImage>

// Pictures for the icon tests.

inline QImage translucentImage(int width, int height)
{
    QImage image(width, height, QImage::Format_ARGB32);
    image.fill(QColor(0, 182, 136, 128));
    return image;
}

inline QByteArray encoded(const QImage &image, const char *format)
{
    QBuffer buffer;
    if (!buffer.open(QIODevice::WriteOnly) || !image.save(&buffer, format)) {
        qFatal("the test image could not be encoded");
    }
    return buffer.data();
}

inline QByteArray icoBytes(int width, int height)
{
    return encoded(translucentImage(width, height), "ICO");
}

inline ExtractedIcon extractedIcon(int width, int height)
{
    return {ExtractedIcon::Outcome::Extracted, translucentImage(width, height)};
}
