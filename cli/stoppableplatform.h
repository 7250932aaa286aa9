// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/nativeplatform.h"

#include <QtGlobal>

#include <atomic>

class JobGate;

// The native platform with two changes that make it possible to stop a job: its pauses end when the
// gate closes, and another thread can kill the running helper process.
class StoppablePlatform final : public NativePlatform
{
public:
    // `gate` is borrowed and must outlive this object.
    explicit StoppablePlatform(JobGate &gate);

    // Kills the running helper, if there is one. Call it on any thread.
    void killHelper();

    void prepareStart(QProcess &process) override;
    void pause(std::chrono::milliseconds duration) override;

private:
    JobGate &m_gate;
    std::atomic<qint64> m_helperId = 0; // 0 if no helper is running
};
