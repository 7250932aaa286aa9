// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/detachonclose.h"

#include "helpers/self-extractor/base/thread.h"
#include "helpers/self-extractor/windows/job.h"

namespace sfx {

namespace {

constinit Monitor jobMonitor;
constinit Job *runningJob = nullptr;

void setRunningJob(Job *job)
{
    const Locked locked(jobMonitor);
    runningJob = job;
}

} // namespace

DetachJobOnClose::DetachJobOnClose(Job &job)
{
    setRunningJob(&job);
}

DetachJobOnClose::~DetachJobOnClose()
{
    setRunningJob(nullptr);
}

void detachRunningJob()
{
    const Locked locked(jobMonitor);
    if (runningJob != nullptr) {
        runningJob->detachProcesses();
    }
}

} // namespace sfx
