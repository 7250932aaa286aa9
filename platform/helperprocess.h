// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QProcess>

// A QProcess for the programs that lie in the temporary directory.
//
// It adds three things: a start that the platform may refuse, silence when it is started again
// while still running (the running program goes on, as with QProcess), and an end of the program
// together with the object. Lives on the thread that made it.
class HelperProcess : public QProcess
{
    Q_OBJECT

public:
    using QProcess::QProcess;
    ~HelperProcess() override;

    // Starts `program` with `arguments`, open for reading and writing. When the platform refuses it,
    // nothing is started, state() stays NotRunning and errorString() holds the reason.
    void startHelper(const QString &program, const QStringList &arguments);
};
