// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "cli/replacefile.h"

#include <QFile>

#include <cerrno>
#include <cstdio>

QString replaceFile(const QString &from, const QString &to)
{
    const QByteArray source = QFile::encodeName(from);
    const QByteArray target = QFile::encodeName(to);
    return std::rename(source.constData(), target.constData()) == 0 ? QString()
                                                                    : qt_error_string(errno);
}
