// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QImageIOHandler>

// Reads SVG files as images, at their own size or at the one that QImageReader is told.
class SvgImageHandler : public QImageIOHandler
{
public:
    // Looks at the beginning of the file without taking it from the device.
    static bool looksLikeSvg(QIODevice &device);

    bool canRead() const override;
    bool read(QImage *image) override;
    bool supportsOption(ImageOption option) const override;
    QVariant option(ImageOption option) const override;
    void setOption(ImageOption option, const QVariant &value) override;

private:
    QSize m_scaledSize;
};
