// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QFile>
#include <QProcess>

// The differences between the systems that run the tests.

#ifdef Q_OS_WIN
constexpr bool onWindows = true;
#else
constexpr bool onWindows = false;
#endif

// A sanitizer makes everything slower and uses additional memory.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool underSanitizer = true;
#elif defined(__has_feature)
constexpr bool underSanitizer = __has_feature(address_sanitizer) || __has_feature(thread_sanitizer);
#else
constexpr bool underSanitizer = false;
#endif

// The environment variable that names the temporary directory.
constexpr const char *temporaryDirectoryVariable = onWindows ? "TMP" : "TMPDIR";

// Starts a Windows program: under Wine if the test is not a Windows program.
inline void startWindowsProgram(QProcess &process, const QString &program,
                                const QStringList &arguments = {})
{
    if (onWindows) {
        process.start(program, arguments);
    } else {
        process.start("wine", QStringList{program} + arguments);
    }
}

// Returns the permissions that the system can tell apart. Windows knows only whether a file is
// writable.
inline QFile::Permissions known(QFile::Permissions permissions)
{
    return onWindows ? permissions & QFile::WriteOwner : permissions;
}
