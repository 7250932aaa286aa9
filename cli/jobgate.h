// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QSemaphore>

#include <atomic>
#include <chrono>

// Stops a running job. The engine cannot be cancelled, but the job passes this gate each time it
// emits a signal. To interrupt a job, first close the gate, then clean up.
class JobGate
{
public:
    // On the job's thread. Returns at once, or never if the gate is closed.
    void pass();

    // On any other thread. Closes the gate for ever and waits until the job has stopped at it.
    // Returns false if the job did not arrive within `limit`.
    bool close(std::chrono::milliseconds limit);

private:
    QSemaphore m_standing; // released once, when the job stands
    QSemaphore m_never;
    std::atomic<bool> m_isClosed = false;
    std::atomic<bool> m_jobStands = false;
};
