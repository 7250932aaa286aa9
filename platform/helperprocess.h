// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QProcess>

// A QProcess for the helper programs in the temporary directory.
//
// It adds three things. The platform may refuse a start. A second start while the program still
// runs has no effect, as with QProcess, but prints no warning. The destructor kills the program.
// Use it on the thread that created it.
class HelperProcess : public QProcess
{
    Q_OBJECT

public:
    using QProcess::QProcess;
    ~HelperProcess() override;

    // Starts `program` with `arguments`, open for reading and writing. If the platform refuses it,
    // nothing is started, state() stays NotRunning, and errorString() returns the reason.
    void startHelper(const QString &program, const QStringList &arguments);
};
