// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "platform/iconsource.h"

#include "platform/platform.h"

// There is no Windows shell here, so the icon is read from the file's resources: the largest image
// of the first group. (The Windows shell prefers the small icon.)
ExtractedIcon extractNativeIcon(const QString &executable)
{
    const QByteArray file = platform().iconFile(executable);
    if (file.isEmpty()) {
        return {ExtractedIcon::Outcome::NoIcon, {}};
    }
    const QImage image = QImage::fromData(file, "ICO");
    return {ExtractedIcon::Outcome::Extracted, image.convertToFormat(QImage::Format_ARGB32)};
}
