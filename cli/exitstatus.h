// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

// The exit statuses of the terminal program; an interruption ends it as the system's own signal does.
enum ExitStatus {
    ExitDone = 0,
    ExitJobFailed = 1,
    ExitWrongUsage = 2 // nothing was started
};
