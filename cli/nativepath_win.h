// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QDir>
#include <QString>

#include <string>

// Returns the absolute path `path` in the form that is not limited to 260 characters. In that form
// Windows does not interpret dots or forward slashes, so they are resolved here.
inline std::wstring unlimitedPath(const QString &path)
{
    const QString native = QDir::toNativeSeparators(QDir::cleanPath(path));
    if (native.startsWith(QLatin1String(R"(\\?\)"))) {
        return native.toStdWString();
    }
    if (native.startsWith(QLatin1String(R"(\\)"))) {
        return (QLatin1String(R"(\\?\UNC)") + native.mid(1)).toStdWString();
    }
    return (QLatin1String(R"(\\?\)") + native).toStdWString();
}
