// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/nativeplatform.h"

#include <QtGlobal>

#include <atomic>

class JobGate;

// The native platform for a job at a terminal. Another thread can kill the running helper process,
// and the job stops in a pause if the gate is closed.
//
// Nothing waits for the shell's icon cache: the job makes the executable in a directory that nobody
// looks at, and moves it to its place later. For the same reason the programs that would refresh the
// cache are not started.
class StoppablePlatform final : public NativePlatform
{
public:
    // `gate` is borrowed and must outlive this object.
    explicit StoppablePlatform(JobGate &gate);

    // Call it before the job. With `used` false, the main program counts as one without an icon.
    void setProgramIconUsed(bool used) { m_usesProgramIcon = used; }

    // Kills the running helper, if there is one. Call it on any thread.
    void killHelper();

    QByteArray iconFile(const QString &executable) override;
    void prepareStart(QProcess &process) override;
    void startDetached(const QString &program) override;
    void pause(std::chrono::milliseconds duration) override;

private:
    JobGate &m_gate;
    bool m_usesProgramIcon = true;
    std::atomic<qint64> m_helperId = 0; // 0 if no helper is running
};
