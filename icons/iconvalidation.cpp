// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "icons/iconvalidation.h"

#include "platform/joblog.h"

#include <QImage>

namespace {

constexpr qsizetype directoryHeaderSize = 6;

bool startsLikeAnIcon(const QByteArray &data)
{
    return data.startsWith(QByteArrayView("\x00\x00\x01\x00", 4));
}

} // namespace

bool isUsableIcon(const QByteArray &data, const LogSink &log)
{
    if (data.size() < directoryHeaderSize) {
        log(WorkerText::tr("图标数据太小，至少需要6字节"));
        return false;
    }
    if (!startsLikeAnIcon(data)) {
        log(WorkerText::tr("无效的ICO文件头"));
        return false;
    }
    QImage image;
    if (!image.loadFromData(data, "ICO")) {
        log(WorkerText::tr("无法将数据加载为ICO格式"));
        return false;
    }
    log(WorkerText::tr("图标验证通过 - 尺寸: %1x%2").arg(image.width()).arg(image.height()));
    return true;
}
