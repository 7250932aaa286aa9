// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "icons/platform/platform.h"

#include <QtGlobal>

#include <atomic>

class JobGate;

// The system's own platform, but for two things that let a job be stopped: its pauses end when the
// gate closes, and the helper process that is running can be killed from another thread.
class StoppablePlatform final : public Platform
{
public:
    // `gate` is borrowed.
    explicit StoppablePlatform(JobGate &gate);

    // On any thread.
    void killHelper();

    ExtractedIcon extractIcon(const QString &executable) override;
    QString refusalToUse(const QString &path) override;
    void prepareStart(QProcess &process) override;
    void startDetached(const QString &program) override;
    void notifyAssociationsChanged() override;
    void pause(std::chrono::milliseconds duration) override;
    QString nativePath(const QString &path) override;

private:
    JobGate &m_gate;
    const std::unique_ptr<Platform> m_native = makeNativePlatform();
    std::atomic<qint64> m_helperId = 0; // 0: none is running
};
