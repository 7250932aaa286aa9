// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QImageIOHandler>

// Reads SVG files as images, at the size in the file or at the size set with QImageReader.
class SvgImageHandler : public QImageIOHandler
{
public:
    // Checks the beginning of the file with peek(), so the device's position does not change.
    static bool looksLikeSvg(QIODevice &device);

    bool canRead() const override;
    bool read(QImage *image) override;
    bool supportsOption(ImageOption option) const override;
    QVariant option(ImageOption option) const override;
    void setOption(ImageOption option, const QVariant &value) override;

private:
    QSize m_scaledSize;
};
