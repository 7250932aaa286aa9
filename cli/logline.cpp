// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "cli/logline.h"

#include <algorithm>
#include <array>

namespace {

template <std::size_t size>
bool startsWithOneOf(const QString &line, const std::array<const char *, size> &beginnings)
{
    return std::any_of(beginnings.begin(), beginnings.end(), [&line](const char *beginning) {
        return line.startsWith(QString::fromUtf8(beginning));
    });
}

} // namespace

// Most failures and warnings have their kind as the first word. The other texts here are the
// details of a failure, and the reasons for refusing an icon; a warning follows directly after such
// a reason.
LogLineKind kindOfLogLine(const QString &line)
{
    static constexpr std::array errors{"错误：", "错误详情:", "7z错误输出:", "创建单文件失败"};
    static constexpr std::array warnings{"警告：", "图标数据太小", "无效的ICO文件头",
                                         "无法将数据加载为ICO格式"};
    if (startsWithOneOf(line, errors)) {
        return LogLineKind::Error;
    }
    return startsWithOneOf(line, warnings) ? LogLineKind::Warning : LogLineKind::Information;
}
