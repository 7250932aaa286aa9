// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <sys/types.h>

// What one run of a program cost.
struct RunCost
{
    double wallSeconds = 0; // from just before the fork to the end of the program's process
    // User and system time of the program's process and of all its descendants that have ended by
    // the time it has, and of the server during the run.
    double processorSeconds = 0;
    double serverSeconds = 0; // the server's share of that
    long peakKibibytes = 0;   // high-water mark of the resident memory of the program's process
    int processes = 0;        // that were counted; the server is not one of them
    int exitCode = -1;        // the program's; -1: it could not be started, or a signal ended it
};

// Starts the command, found by PATH, and waits for it. `server` is a process that works for the
// command without being its descendant, as wineserver does; 0: there is none.
RunCost runMeasured(char *const command[], pid_t server);
