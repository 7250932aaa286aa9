// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QFile>
#include <QProcess>

// Where the systems that the tests run on differ.

#ifdef Q_OS_WIN
constexpr bool onWindows = true;
#else
constexpr bool onWindows = false;
#endif

// A sanitizer makes everything slower, and needs memory of its own.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool underSanitizer = true;
#elif defined(__has_feature)
constexpr bool underSanitizer = __has_feature(address_sanitizer) || __has_feature(thread_sanitizer);
#else
constexpr bool underSanitizer = false;
#endif

// The environment variable that names the temporary directory.
constexpr const char *temporaryDirectoryVariable = onWindows ? "TMP" : "TMPDIR";

// Starts a Windows program: under Wine, where the test itself is none.
inline void startWindowsProgram(QProcess &process, const QString &program,
                                const QStringList &arguments = {})
{
    if (onWindows) {
        process.start(program, arguments);
    } else {
        process.start("wine", QStringList{program} + arguments);
    }
}

// Those of `permissions` that the system can tell apart: on Windows a file may be written or not.
inline QFile::Permissions known(QFile::Permissions permissions)
{
    return onWindows ? permissions & QFile::WriteOwner : permissions;
}
