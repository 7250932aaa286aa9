// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "preparation/archivermethod.h"

#include <algorithm>

namespace {

constexpr int mebibyte = 1 << 20;

// In bytes; what 7-Zip takes for a level on 64-bit systems (LzmaEncProps_Normalize in LzmaEnc.c).
qint64 dictionaryOf(int level)
{
    return level <= 4 ? qint64(1) << (level * 2 + 16) : qint64(1) << std::min(level + 20, 28);
}

// In MiB; what 7-Zip takes on four and more processors (Lzma2EncProps_Normalize in Lzma2Enc.c).
qint64 blockOf(int level)
{
    const qint64 dictionary = dictionaryOf(level);
    const qint64 block = std::clamp<qint64>(4 * dictionary, mebibyte, qint64(256) * mebibyte);
    return std::max(block, dictionary) / mebibyte;
}

} // namespace

QString archiverMethod(const QString &level, const QString &method)
{
    const int number = level.toInt();
    if (number == 0) {
        return QStringLiteral("Copy");
    }
    // LZMA's output is the same with one and with two threads, and it uses no more.
    return method == QLatin1String("LZMA2") ? QStringLiteral("LZMA2:c=%1m").arg(blockOf(number))
                                            : method;
}

QString fastArchiverMethod()
{
    return QStringLiteral("ZSTD");
}

bool isArchiverPattern(const QString &path)
{
    const QString name = path.startsWith(QLatin1String("//?/")) ? path.mid(4) : path;
    return name.contains('*') || name.contains('?');
}
