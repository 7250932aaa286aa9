// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "cli/console.h"
#include "cli/jobgate.h"
#include "cli/outputguard.h"
#include "cli/stoppableplatform.h"
#include "packaging/packagingjob.h"
#include "packaging/worker.h"

#include <QObject>
#include <QThread>

// Runs one job for the terminal program, on a thread of its own, and shows it on the console. Lives on
// the main thread, which must run an event loop.
class TerminalJob : public QObject
{
    Q_OBJECT

public:
    // The job's archivePath is set here. `console` is borrowed, and outlives this object.
    TerminalJob(const PackagingJob &job, Console &console);
    ~TerminalJob() override;

    // Starts the job; ended() tells its end.
    void start();

    // Stops the job, removes what it left, and ends the process as `cause` would have; see
    // InterruptWatcher. Blocks for five seconds at most.
    [[noreturn]] void interrupt(int cause);

signals:
    // Comes once; `exitStatus` is ExitDone or ExitJobFailed.
    void ended(int exitStatus);

private:
    void finish(bool success);
    bool concludeOutput(bool success);

    PackagingJob m_job;
    Console &m_console;
    const QString m_output;
    OutputGuard m_guard;
    JobGate m_gate;
    StoppablePlatform m_platform;
    QThread m_thread;
    Worker m_worker;
};
