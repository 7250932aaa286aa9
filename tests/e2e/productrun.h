// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/support/onwindows.h"
#include "tests/support/waiting.h"
#include "tests/support/windowsprogram.h"

#include <QDir>
#include <QDirIterator>
#include <QProcess>
#include <QString>

// Runs programs, and produced programs, to their end.

struct ProgramRun
{
    int exitCode = -1;
    QString output;
    QString errors;
};

inline ProgramRun resultOf(QProcess &process)
{
    if (!process.waitForFinished(patience)) {
        process.kill();
        return {-1, {}, "did not start or timed out"};
    }
    return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}

inline ProgramRun runProgram(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    return resultOf(process);
}

inline ProgramRun startProduct(const QString &product, const QStringList &arguments = {})
{
    QProcess process;
    startWindowsProgram(process, product, arguments);
    return resultOf(process);
}

// The private folders that produced programs have made in their temporary directory: on Windows in
// the directory of this process, elsewhere in that of the Wine prefix.
inline QStringList unpackedFolders()
{
    if (onWindows) {
        return QDir::temp().entryList({"kp-*"}, QDir::Dirs | QDir::Hidden);
    }
    QStringList found;
    QDirIterator users(qEnvironmentVariable("WINEPREFIX") + "/drive_c/users", {"kp-*"},
                       QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot,
                       QDirIterator::Subdirectories);
    while (users.hasNext()) {
        found << users.next();
    }
    return found;
}
