// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "svg/svgplugins.h"

#include "svg/svgiconengine.h"
#include "svg/svgimagehandler.h"

QImageIOPlugin::Capabilities SvgImagePlugin::capabilities(QIODevice *device,
                                                          const QByteArray &format) const
{
    if (format == "svg"
        || (format.isEmpty() && device && device->isReadable()
            && SvgImageHandler::looksLikeSvg(*device))) {
        return CanRead;
    }
    return {};
}

QImageIOHandler *SvgImagePlugin::create(QIODevice *device, const QByteArray &format) const
{
    auto *handler = new SvgImageHandler;
    handler->setDevice(device);
    handler->setFormat(format);
    return handler;
}

QIconEngine *SvgIconPlugin::create(const QString &filename)
{
    auto *engine = new SvgIconEngine;
    if (!filename.isEmpty()) {
        engine->addFile(filename, QSize(), QIcon::Normal, QIcon::Off);
    }
    return engine;
}
