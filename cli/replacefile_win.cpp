// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "cli/replacefile.h"

#include "platform/nativepath.h"

#include <QFile>

#include <windows.h>

namespace {

// Virus scanners check a new program, and keep it open meanwhile.
constexpr int attempts = 50;
constexpr DWORD pauseMs = 100;

bool move(const QString &from, const QString &to, DWORD flags)
{
    return MoveFileExW(pe::extendedPath(toNativePath(from)).c_str(),
                       pe::extendedPath(toNativePath(to)).c_str(), flags)
        != 0;
}

bool isPassing(DWORD error)
{
    return error == ERROR_SHARING_VIOLATION || error == ERROR_LOCK_VIOLATION;
}

DWORD moveOver(const QString &from, const QString &to)
{
    for (int attempt = 1;; ++attempt) {
        if (move(from, to, MOVEFILE_REPLACE_EXISTING)) {
            return ERROR_SUCCESS;
        }
        const DWORD error = GetLastError();
        if (!isPassing(error) || attempt == attempts) {
            return error;
        }
        Sleep(pauseMs);
    }
}

// Returns an unused file name in the directory of `path`.
QString freeNameBeside(const QString &path)
{
    QString name = path + ".previous";
    for (int number = 2; QFile::exists(name); ++number) {
        name = QStringLiteral("%1.previous-%2").arg(path).arg(number);
    }
    return name;
}

} // namespace

QString replaceFile(const QString &from, const QString &to)
{
    DWORD error = moveOver(from, to);
    if (error == ERROR_SUCCESS) {
        return {};
    }
    // A running program can be renamed, but not replaced.
    const QString aside = freeNameBeside(to);
    if (move(to, aside, 0)) {
        error = moveOver(from, to);
        if (error == ERROR_SUCCESS) {
            DeleteFileW(pe::extendedPath(toNativePath(aside)).c_str());
            return {};
        }
        move(aside, to, 0);
    }
    return qt_error_string(static_cast<int>(error));
}
