// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/text.h"
#include "helpers/self-extractor/windows/win32.h"

namespace sfx {

// A job object for the program and all processes that it starts. When this object is destroyed, or
// this process ends, every process in the job ends. A process started with
// CREATE_BREAKAWAY_FROM_JOB is not in the job, as its creator wants.
class Job
{
public:
    // Returns false if the system cannot create a job.
    [[nodiscard]] bool create();
    // Puts a process into the job, if possible before its first instruction. Returns false if it is
    // already in another job that does not allow this.
    bool add(HANDLE process);
    // Waits until no process in the job works with the files in `folder`. The others, as a browser
    // that the program has opened, do not end with this process from then on.
    void waitForProgramsIn(const Text &folder);
    // From now on the processes do not end when this one does. Any thread may call it.
    void detachProcesses();
    HANDLE handle() const { return m_job.get(); }

private:
    bool setLimits(DWORD flags);
    unsigned activeProcesses() const;
    bool hasProgramsIn(const Text &folder) const;

    Handle m_job;
};

// An attribute for CreateProcessW: the process starts inside the job, so there is no moment at
// which the end of this process would leave it running.
class JobAttribute
{
public:
    // `job` must outlive this object. Returns false before Windows 10.
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
