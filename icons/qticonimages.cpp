// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "icons/iconextraction.h"
#include "icons/iconimages.h"
#include "icons/imageofpixmap.h"

#include <QImage>

namespace {

class QtIconImages final : public IconImages
{
public:
    QtIconImages() { setIconImages(this); }

    std::optional<QSize> sizeOfIcon(const QByteArray &file) override
    {
        QImage image;
        return image.loadFromData(file, "ICO") ? std::optional(image.size()) : std::nullopt;
    }

    QByteArray iconOfExecutable(const QString &executable, const LogSink &log) override
    {
        return ::iconOfExecutable(executable, log);
    }

    std::optional<VisibleImage> visibleImage(const QString &path) override
    {
        const QImage image = imageOfPixmap(QImage(path));
        return image.isNull() ? std::nullopt
                              : std::optional(VisibleImage{image.size(), image.hasAlphaChannel()});
    }
};

// This object file is a part of every program that links kestrelpack_icons.
QtIconImages images;

} // namespace
