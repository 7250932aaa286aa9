// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>

#include <chrono>

// Turns Ctrl-C and a request to end (SIGTERM, SIGHUP, a closing console) into a Qt signal on the
// thread that created this object. That thread must run an event loop. While the object exists,
// these events do not end the program. Only one object at a time.
class InterruptWatcher : public QObject
{
    Q_OBJECT

public:
    explicit InterruptWatcher(QObject *parent = nullptr);
    ~InterruptWatcher() override;

signals:
    // `cause` is the number of the system's signal, or on Windows of the console event.
    void interrupted(int cause);
};

// Ends the process at once, in the same way as the event `cause` (from interrupted()) ends a
// process.
[[noreturn]] void endAsInterrupted(int cause);

// How long a job may take to stop after the event `cause`, at most.
std::chrono::milliseconds timeToStop(int cause);

// Kills the process with the number `id` at once; does nothing if `id` is 0.
void killProcess(qint64 id);
