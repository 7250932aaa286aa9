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
    /// False: the system gives no job.
    [[nodiscard]] bool create();
    /// Puts a process into the job, best before its first instruction. False: it cannot be put
    /// there, since it is in another job that allows no further one.
    bool add(HANDLE process);
    /// Waits until no process is left in the job; returns at once if there was none.
    void waitUntilEmpty();
    /// The processes no longer end with this one. From any thread.
    void detachProcesses();
    HANDLE handle() const { return m_job.get(); }

private:
    bool setLimits(DWORD flags);
    unsigned activeProcesses() const;

    Handle m_job;
};

/// For CreateProcessW: the process is in the job from its making on, so that there is no moment at
/// which the end of this process would leave it behind. Windows 10 and later know it.
class JobAttribute
{
public:
    /// The job is to stay. False: this Windows cannot do it.
    [[nodiscard]] bool create(const Job &job);
    LPPROC_THREAD_ATTRIBUTE_LIST list() { return m_list; }

    JobAttribute() = default;
    JobAttribute(const JobAttribute &) = delete;
    JobAttribute &operator=(const JobAttribute &) = delete;
    ~JobAttribute();

private:
    HANDLE m_job = nullptr;
    LPPROC_THREAD_ATTRIBUTE_LIST m_list = nullptr;
    alignas(void *) unsigned char m_buffer[128] = {}; // one attribute takes 48 bytes
};

} // namespace sfx
