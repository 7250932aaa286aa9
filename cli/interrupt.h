// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>

// Turns Ctrl-C and a polite request to end (SIGTERM, SIGHUP, a console that closes) into a signal on
// the thread of its maker, which must run an event loop. One object at a time; from its making on the
// program no longer ends by itself at these events.
class InterruptWatcher : public QObject
{
    Q_OBJECT

public:
    explicit InterruptWatcher(QObject *parent = nullptr);
    ~InterruptWatcher() override;

signals:
    // `cause` is the number of the signal, or on Windows of the console's event.
    void interrupted(int cause);
};

// Ends the process at once the way `cause`, of interrupted(), would have ended it.
[[noreturn]] void endAsInterrupted(int cause);

// Kills the process `id` of this user without asking it; 0 means none.
void killProcess(qint64 id);
