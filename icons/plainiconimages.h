// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "icons/iconimages.h"

// The images of a program without Qt Gui. It checks icons and never decodes their pixels.
class PlainIconImages final : public IconImages
{
public:
    std::optional<QSize> sizeOfIcon(const QByteArray &file) override;

    // Returns the icon's largest image in its original form.
    QByteArray iconOfExecutable(const QString &executable, const LogSink &log) override;

    // Returns nothing: an executable is not an image.
    std::optional<VisibleImage> visibleImage(const QString &path) override;
};
