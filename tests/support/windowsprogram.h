// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/support/onwindows.h"

#include <QProcess>

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
