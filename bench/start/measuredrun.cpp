// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "bench/start/measuredrun.h"

#include <chrono>
#include <cstdio>
#include <string>
#include <thread>

#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using Clock = std::chrono::steady_clock;

// After the program's end, we wait this long for descendants that have ended at the same time.
constexpr auto graceTime = std::chrono::milliseconds(300);

double seconds(const timeval &time)
{
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

double processorTime(const rusage &usage)
{
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

// Reads the scheduler's count in nanoseconds; /proc/PID/stat has only hundredths of a second. The
// count is that of the first thread; wineserver has only one thread.
double serverTime(pid_t server)
{
    unsigned long long nanoseconds = 0;
    if (server != 0) {
        const std::string path = "/proc/" + std::to_string(server) + "/schedstat";
        if (FILE *const file = std::fopen(path.c_str(), "r")) {
            if (std::fscanf(file, "%llu", &nanoseconds) != 1) {
                nanoseconds = 0;
            }
            std::fclose(file);
        }
    }
    return static_cast<double>(nanoseconds) / 1e9;
}

pid_t start(char *const command[])
{
    const pid_t child = fork();
    if (child == 0) {
        execvp(command[0], command);
        _exit(127);
    }
    return child;
}

// Counts the descendants that have ended. Those that still run, such as Wine's desktop, are not
// counted.
void collectDescendants(RunCost &cost)
{
    const auto deadline = Clock::now() + graceTime;
    for (;;) {
        rusage usage{};
        const pid_t ended = wait4(-1, nullptr, WNOHANG, &usage);
        if (ended > 0) {
            cost.processorSeconds += processorTime(usage);
            ++cost.processes;
        } else if (ended < 0 || Clock::now() > deadline) {
            return;
        } else {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    }
}

} // namespace

RunCost runMeasured(char *const command[], pid_t server)
{
    RunCost cost;
    // Wine forks twice to start a process, so the process loses its parent at once; this makes it
    // our child.
    prctl(PR_SET_CHILD_SUBREAPER, 1);
    const double serverBefore = serverTime(server);
    const auto before = Clock::now();
    const pid_t child = start(command);
    while (child > 0) {
        int status = 0;
        rusage usage{};
        const pid_t ended = wait4(-1, &status, 0, &usage);
        if (ended < 0) {
            break;
        }
        cost.processorSeconds += processorTime(usage);
        ++cost.processes;
        if (ended == child) {
            cost.wallSeconds = std::chrono::duration<double>(Clock::now() - before).count();
            cost.peakKibibytes = usage.ru_maxrss;
            cost.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
            break;
        }
    }
    collectDescendants(cost);
    cost.serverSeconds = serverTime(server) - serverBefore;
    cost.processorSeconds += cost.serverSeconds;
    return cost;
}
