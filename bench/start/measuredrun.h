// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <sys/types.h>

// The cost of one run of a program.
struct RunCost
{
    double wallSeconds = 0; // from just before the fork to the end of the program's process
    // User and system time of the program's process, of all its descendants that have ended when it
    // ends, and of the server during the run.
    double processorSeconds = 0;
    double serverSeconds = 0; // the server's part of processorSeconds
    long peakKibibytes = 0;   // largest resident memory of the program's process
    int processes = 0;        // number of counted processes, without the server
    int exitCode = -1;        // -1 if the program could not be started or a signal ended it
};

// Starts the command, which is looked up in PATH, and waits for its end. `server` is the id of a
// process that works for the command but is not its descendant, such as wineserver; 0 means none.
RunCost runMeasured(char *const command[], pid_t server);
