// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

// For builds without the self-extractor's sources.

#include "cli/readingcommands.h"

#include "cli/exitstatus.h"
#include "cli/language.h"

int runReadingCommand(const CommandLine &, Console &console)
{
    console.showMessage(text("this build of kestrelpack-cli cannot read produced files"));
    return ExitWrongUsage;
}
