// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "cli/commandline.h"
#include "cli/console.h"

// Runs `inspect`, `verify` or `extract`. Returns the exit status: ExitDone; ExitJobFailed if the
// file would not start; ExitWrongUsage if it cannot be opened, or if the folder to extract into is
// in use.
int runReadingCommand(const CommandLine &line, Console &console);
