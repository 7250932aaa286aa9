// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/fast-archiver/machine.h"

#include <algorithm>
#include <thread>

#include <csignal>
#include <unistd.h>

namespace fast {

namespace {

std::atomic<bool> *stoppedFlag = nullptr;

void stop(int)
{
    *stoppedFlag = true;
}

} // namespace

unsigned processorCount()
{
    return std::max(1U, std::thread::hardware_concurrency());
}

std::uint64_t physicalMemory()
{
    const long pages = sysconf(_SC_PHYS_PAGES);
    const long size = sysconf(_SC_PAGESIZE);
    return pages > 0 && size > 0
        ? static_cast<std::uint64_t>(pages) * static_cast<std::uint64_t>(size)
        : 0;
}

void stopWhenInterrupted(std::atomic<bool> &stopped)
{
    stoppedFlag = &stopped;
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        if (std::signal(number, SIG_IGN) != SIG_IGN) { // ignored under nohup
            std::signal(number, stop);
        }
    }
}

void removeFile(const pe::NativePath &path)
{
    unlink(path.c_str());
}

} // namespace fast
