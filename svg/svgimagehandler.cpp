// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "svg/svgimagehandler.h"

#include "svg/svgdrawing.h"

#include <QIODevice>
#include <QVariant>

namespace {

// In bytes: enough for a declaration and some comments before the root element.
constexpr qint64 lookedAt = 1024;

} // namespace

bool SvgImageHandler::looksLikeSvg(QIODevice &device)
{
    return device.peek(lookedAt).contains("<svg");
}

bool SvgImageHandler::canRead() const
{
    if (!device() || !looksLikeSvg(*device())) {
        return false;
    }
    setFormat("svg");
    return true;
}

bool SvgImageHandler::read(QImage *image)
{
    const SvgDrawing drawing(device()->readAll());
    const QSize size = m_scaledSize.isEmpty() ? drawing.size().toSize() : m_scaledSize;
    *image = drawing.render(size);
    return !image->isNull();
}

bool SvgImageHandler::supportsOption(ImageOption option) const
{
    return option == Size || option == ScaledSize || option == ImageFormat;
}

QVariant SvgImageHandler::option(ImageOption option) const
{
    switch (option) {
    case Size:
        return SvgDrawing(device()->peek(device()->size())).size().toSize();
    case ScaledSize:
        return m_scaledSize;
    case ImageFormat:
        return QImage::Format_RGBA8888;
    default:
        return QVariant();
    }
}

void SvgImageHandler::setOption(ImageOption option, const QVariant &value)
{
    if (option == ScaledSize) {
        m_scaledSize = value.toSize();
    }
}
