// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "cli/console.h"
#include "cli/jobgate.h"
#include "cli/outputguard.h"
#include "cli/preparejob.h"
#include "cli/privatedirectory.h"
#include "cli/productcheck.h"
#include "cli/producticon.h"
#include "cli/stageclock.h"
#include "cli/stoppableplatform.h"
#include "packaging/worker.h"

#include <QObject>
#include <QThread>

// Runs one job for the terminal program on a separate thread, checks what it has made, and shows it
// on the console. Use it on the main thread, which must run an event loop.
class TerminalJob : public QObject
{
    Q_OBJECT

public:
    // What follows the engine. Each may be null.
    struct Afterwards
    {
        IconKeeper keepIcon;
        ProductCheck check;
    };

    // `guard` must hold the output, and `temporary` must have been entered. All but `job` and
    // `afterwards` are borrowed and must outlive this object.
    TerminalJob(const PreparedJob &job, OutputGuard &guard, PrivateDirectory &temporary,
                Console &console, const Afterwards &afterwards);
    ~TerminalJob() override;

    // Starts the job and returns. ended() is emitted at its end.
    void start();

    // Stops the job, removes its files, and ends the process with endAsInterrupted(cause). Waits
    // for timeToStop(cause) at most. If the job has already ended, returns and does nothing.
    void interrupt(int cause);

signals:
    // Emitted once. `exitStatus` is ExitDone or ExitJobFailed.
    void ended(int exitStatus);

    // Internal, from the job's thread: the engine had not added the icon, it has been added now.
    void iconAdded();
    // Internal, from the job's thread: the product is now checked.
    void checking();
    // Internal: the engine and the check are at their end. `problem` says as one sentence what is
    // wrong with the result; it is empty if it is good.
    void completed(const QString &problem, const QString &sha256);

private:
    void runEngineAndCheck();
    QString iconProblem();
    QString problem(bool success) const;
    void show(QString line);
    void finish(QString problem, const QString &sha256);
    void tellSuccess(const QString &sha256);

    const PreparedJob m_prepared;
    PackagingJob m_job; // with the paths of this run
    OutputGuard &m_guard;
    PrivateDirectory &m_temporary;
    Console &m_console;
    const Afterwards m_afterwards;
    bool m_hasEnded = false;
    StageClock m_clock;
    JobGate m_gate;
    StoppablePlatform m_platform;
    QThread m_thread;
    Worker m_worker;
};
