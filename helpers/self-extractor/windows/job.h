// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/windows/win32.h"

namespace sfx {

/// The program and all that it starts. When this object goes, or the process that holds it is
/// ended, every process in the job ends too. A process that is started with
/// CREATE_BREAKAWAY_FROM_JOB leaves it, as its maker wants.
class Job
{
public:
    /// Puts a process into the job, best before its first instruction. False: it cannot be put
    /// there, since it is in another job that allows no further one; the job then stays empty.
    bool add(HANDLE process);
    /// Waits until no process is left in the job; returns at once if none was added.
    void waitUntilEmpty();

private:
    bool create();
    unsigned activeProcesses() const;

    Handle m_job;
};

} // namespace sfx
