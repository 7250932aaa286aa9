// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "svg/svgdrawing.h"

#include <nanosvg.h>
#include <nanosvgrast.h>

#include <algorithm>

void SvgDrawing::Deleter::operator()(NSVGimage *image) const
{
    nsvgDelete(image);
}

SvgDrawing::SvgDrawing(const QByteArray &file)
{
    QByteArray text = file; // the parser writes into it
    m_image.reset(nsvgParse(text.data(), "px", 96.0F));
}

QSizeF SvgDrawing::size() const
{
    return m_image ? QSizeF(m_image->width, m_image->height) : QSizeF();
}

QImage SvgDrawing::render(const QSize &pixels) const
{
    if (isEmpty() || pixels.isEmpty()) {
        return QImage();
    }
    QImage image(pixels, QImage::Format_RGBA8888);
    const std::unique_ptr<NSVGrasterizer, decltype(&nsvgDeleteRasterizer)> rasterizer(
        nsvgCreateRasterizer(), nsvgDeleteRasterizer);
    if (image.isNull() || !rasterizer) {
        return QImage();
    }
    const auto width = static_cast<float>(pixels.width());
    const auto height = static_cast<float>(pixels.height());
    const float scale = std::min(width / m_image->width, height / m_image->height);
    nsvgRasterize(rasterizer.get(), m_image.get(), (width - scale * m_image->width) / 2,
                  (height - scale * m_image->height) / 2, scale, image.bits(), image.width(),
                  image.height(), static_cast<int>(image.bytesPerLine()));
    return image;
}
