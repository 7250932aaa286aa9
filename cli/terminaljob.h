// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "cli/archivedirectory.h"
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
    // The job's archivePath and outputDir are set here. `guard` holds the output; it and `console` are borrowed,
    // and outlive this object.
    TerminalJob(const PackagingJob &job, OutputGuard &guard, Console &console);
    ~TerminalJob() override;

    // Starts the job; ended() tells its end.
    void start();

    // Stops the job, removes what it left, and ends the process as `cause` would have; see
    // InterruptWatcher. Blocks for five seconds at most. Returns, and does nothing, when the job has ended.
    void interrupt(int cause);

signals:
    // Comes once; `exitStatus` is ExitDone or ExitJobFailed.
    void ended(int exitStatus);

private:
    void show(QString line);
    void finish(bool success);
    // What speaks against the job's result as one English sentence; empty when it is good.
    QString problem(bool success) const;
    void tellSuccess();

    PackagingJob m_job;
    const QString m_outputDir; // as the user knows it
    OutputGuard &m_guard;
    Console &m_console;
    bool m_hasEnded = false;
    ArchiveDirectory m_archive;
    JobGate m_gate;
    StoppablePlatform m_platform;
    QThread m_thread;
    Worker m_worker;
};
