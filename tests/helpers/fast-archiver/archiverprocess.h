// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/support/builtfile.h"
#include "tests/support/waiting.h"

#include <QDir>
#include <QProcess>

// One run of an archiver.
struct ArchiverResult
{
    int exitStatus = -1;
    QByteArray output;
    QByteArray errors;
};

// The nine arguments that the engine gives its archiver.
inline QStringList archiverArguments(const QString &archive, const QString &folder,
                                     const QString &method)
{
    return {"a",
            "-t7z",
            QDir::toNativeSeparators(archive),
            QDir::toNativeSeparators(folder + "/*"),
            "-r",
            "-mx=5",
            "-m0=" + method,
            "-bsp1",
            "-ssc"};
}

inline ArchiverResult runArchiver(const BuiltPath &program, const QStringList &arguments)
{
    QProcess process;
    process.start(builtFile(program), arguments);
    if (!process.waitForFinished(patience)) {
        process.kill();
        return {};
    }
    return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
            process.readAllStandardOutput(), process.readAllStandardError()};
}
