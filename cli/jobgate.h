// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

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
    std::mutex m_mutex;
    std::condition_variable m_standing;
    std::condition_variable m_never;
    bool m_isClosed = false;
    bool m_jobStands = false;
};
