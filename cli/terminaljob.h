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

// Runs one job for the terminal program on a separate thread, and shows it on the console. Use it
// on the main thread, which must run an event loop.
class TerminalJob : public QObject
{
    Q_OBJECT

public:
    // Replaces the job's archivePath and outputDir. `guard` must hold the output. `guard` and
    // `console` are borrowed and must outlive this object.
    TerminalJob(const PackagingJob &job, OutputGuard &guard, Console &console);
    ~TerminalJob() override;

    // Starts the job and returns. ended() is emitted at its end.
    void start();

    // Stops the job, removes its files, and ends the process with endAsInterrupted(cause). Waits
    // for timeToStop(cause) at most. If the job has already ended, returns and does nothing.
    void interrupt(int cause);

signals:
    // Emitted once. `exitStatus` is ExitDone or ExitJobFailed.
    void ended(int exitStatus);

private:
    void show(QString line);
    void finish(bool success);
    // Returns what is wrong with the job's result as one English sentence, or an empty text if it
    // is good.
    QString problem(bool success) const;
    void tellSuccess();

    PackagingJob m_job;
    const QString m_outputDir; // the directory that the user named
    OutputGuard &m_guard;
    Console &m_console;
    bool m_hasEnded = false;
    ArchiveDirectory m_archive;
    JobGate m_gate;
    StoppablePlatform m_platform;
    QThread m_thread;
    Worker m_worker;
};
