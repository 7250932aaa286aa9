// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/helpers/self-extractor/modulerun.h"

#include <QObject>

#include <memory>

// A test that runs produced files. Each function begins with an empty temporary folder and must
// leave it empty. A test that needs something else defines its own slots with these names.
class ModuleTest : public QObject
{
    Q_OBJECT

protected:
    // An executable with the test program and data.txt, which contains "still here".
    QString assembleWithData() const;
    // Starts the test program, which then waits. `folder` receives the folder of the unpacked
    // program. Returns null if the program did not start in time.
    std::unique_ptr<QProcess> startWaiting(const QString &file, QString &folder,
                                           int milliseconds = patience) const;

    ModuleRun m_run;

protected slots:
    void initTestCase();
    void init();
    void cleanup();
};
