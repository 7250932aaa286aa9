// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/helpers/self-extractor/modulerun.h"

#include <QObject>

#include <memory>

// A test that runs produced files: each function begins with an empty temporary folder, and has to
// leave it like that. A test that wants more, or something else, has slots of its own by these
// names.
class ModuleTest : public QObject
{
    Q_OBJECT

protected:
    // An executable of the packed test program and, beside it, data.txt, which says "still here".
    QString assembleWithData() const;
    // Starts the test program, which then waits; `folder` is where it was unpacked to. Null: it
    // has not started in time.
    std::unique_ptr<QProcess> startWaiting(const QString &file, QString &folder,
                                           int milliseconds = patience) const;

    ModuleRun m_run;

protected slots:
    void initTestCase();
    void init();
    void cleanup();
};
