// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/nativeplatform.h"

#include <QtGlobal>

#include <atomic>

class JobGate;

// The system's own platform, but for two things that let a job be stopped: its pauses end when the
// gate closes, and the helper process that is running can be killed from another thread.
class StoppablePlatform final : public NativePlatform
{
public:
    // `gate` is borrowed, and outlives this object.
    explicit StoppablePlatform(JobGate &gate);

    // On any thread.
    void killHelper();

    void prepareStart(QProcess &process) override;
    void pause(std::chrono::milliseconds duration) override;

private:
    JobGate &m_gate;
    std::atomic<qint64> m_helperId = 0; // 0: none is running
};
