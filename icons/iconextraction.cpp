// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "icons/iconextraction.h"

#include "icons/imageofpixmap.h"
#include "platform/iconsource.h"
#include "platform/joblog.h"

#include <QBuffer>

namespace {

constexpr int iconSide = 256;

} // namespace

QImage enlargedToIconSize(const QImage &image)
{
    if (image.width() >= iconSide && image.height() >= iconSide) {
        return image;
    }
    return image.scaled(iconSide, iconSide, Qt::KeepAspectRatio, Qt::SmoothTransformation);
}

QByteArray iconOfExecutable(const QString &executable, const LogSink &log)
{
    const ExtractedIcon icon = iconSource().extractIcon(executable);
    switch (icon.outcome) {
    case ExtractedIcon::Outcome::NoIcon:
        log(WorkerText::tr("警告：无法从EXE提取图标"));
        return {};
    case ExtractedIcon::Outcome::NoIconInfo:
        log(WorkerText::tr("错误：无法获取图标信息"));
        return {};
    case ExtractedIcon::Outcome::Extracted:
        break;
    }
    if (icon.image.isNull()) {
        log(WorkerText::tr("错误：无法将图标转换为位图"));
        return {};
    }

    QBuffer buffer;
    if (!buffer.open(QIODevice::WriteOnly)
        || !enlargedToIconSize(imageOfPixmap(icon.image)).save(&buffer, "ICO")) {
        log(WorkerText::tr("错误：图标转换失败"));
        return {};
    }
    const QByteArray bytes = buffer.data();
    log(WorkerText::tr("成功提取图标，大小: %1 字节").arg(bytes.size()));
    return bytes;
}
