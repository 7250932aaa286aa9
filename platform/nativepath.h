// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/pe/nativepath.h"

#include <QDir>
#include <QFile>
#include <QString>

// Returns a path of Qt's in the form of the system.
inline pe::NativePath toNativePath(const QString &path)
{
#ifdef Q_OS_WIN
    return QDir::toNativeSeparators(path).toStdWString();
#else
    return QFile::encodeName(path).toStdString();
#endif
}
