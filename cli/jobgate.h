// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

// Brings a running job to a stand. The engine knows no cancellation, so whoever wants to clear up
// behind an interrupted job first closes the gate that the job passes with every signal it emits.
class JobGate
{
public:
    // On the job's thread. Returns at once; once the gate is closed, never.
    void pass();

    // On the job's thread. Waits for `duration`, or until the gate is closed, and passes.
    void passAfter(std::chrono::milliseconds duration);

    // On any other thread. Closes the gate for good and waits for the job to stand before it; false
    // when it did not come within `limit`.
    bool close(std::chrono::milliseconds limit);

private:
    std::mutex m_mutex;
    std::condition_variable m_closing;
    std::condition_variable m_standing;
    bool m_isClosed = false;
    bool m_jobStands = false;
};
