// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

// The exit statuses of the terminal program. After an interruption it ends as that signal would end
// it.
enum ExitStatus {
    ExitDone = 0,
    ExitJobFailed = 1,
    ExitWrongUsage = 2 // no job was started
};
