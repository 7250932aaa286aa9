// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/joblog.h"

#include <QByteArray>
#include <QSize>
#include <QString>

#include <optional>

// What the icon functions need to know of images. There are two implementations: QtIconImages, which
// every program with the library kestrelpack_icons uses, and PlainIconImages, which needs no Qt Gui
// and so no libraries of a display. The terminal program uses that one.
class IconImages
{
public:
    struct VisibleImage
    {
        QSize size;
        bool hasAlphaChannel = false;
    };

    virtual ~IconImages() = default;

    // Returns the size of the first image of the ICO file `file`, or nothing if it cannot be read.
    virtual std::optional<QSize> sizeOfIcon(const QByteArray &file) = 0;

    // Returns the first icon of the program at `executable` as an ICO file with one image. Returns
    // nothing if there is none or it cannot be converted. Logs one line: the reason, or the number
    // of bytes.
    virtual QByteArray iconOfExecutable(const QString &executable, const LogSink &log) = 0;

    // Returns the image that the file at `path` shows, or nothing if it cannot be read as one.
    virtual std::optional<VisibleImage> visibleImage(const QString &path) = 0;
};

// The implementation in use: PlainIconImages unless setIconImages() was called.
IconImages &iconImages();

// Uses `images`, which is borrowed and must live as long as the program. Called before main().
void setIconImages(IconImages *images);
