// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "icons/plainiconimages.h"

#include "icons/firstimage.h"
#include "platform/platform.h"

std::optional<QSize> PlainIconImages::sizeOfIcon(const QByteArray &file)
{
    const auto size = sizeOfFirstImage({reinterpret_cast<const std::uint8_t *>(file.data()),
                                        static_cast<std::size_t>(file.size())});
    return size ? std::optional(QSize(size->width, size->height)) : std::nullopt;
}

QByteArray PlainIconImages::iconOfExecutable(const QString &executable, const LogSink &log)
{
    const QByteArray icon = platform().iconFile(executable);
    log(icon.isEmpty() ? WorkerText::tr("警告：无法从EXE提取图标")
                       : WorkerText::tr("成功提取图标，大小: %1 字节").arg(icon.size()));
    return icon;
}

std::optional<IconImages::VisibleImage> PlainIconImages::visibleImage(const QString &)
{
    return std::nullopt;
}
