// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "icons/iconvalidation.h"

#include "icons/iconimages.h"
#include "platform/joblog.h"

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
    const auto size = iconImages().sizeOfIcon(data);
    if (!size) {
        log(WorkerText::tr("无法将数据加载为ICO格式"));
        return false;
    }
    log(WorkerText::tr("图标验证通过 - 尺寸: %1x%2").arg(size->width()).arg(size->height()));
    return true;
}
