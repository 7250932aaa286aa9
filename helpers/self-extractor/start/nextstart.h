// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/exitcodes.h"

namespace sfx {

// What to try after CreateProcessW could not start the program.
enum class NextStart {
    None,
    ProducedFile, // the produced file itself, with the rights of an administrator
    ThroughShell  // the program, through the shell
};

// `isElevated`: this process has an administrator's rights.
//
// A program that asks for more rights is not started with them from here: this user may write the
// folder that it lies in, and so may every other program of this user. The produced file is started
// again instead, and unpacks where only administrators may write. It does not come to that
// twice: an elevated process that is refused too has a program with uiAccess, for which the shell
// knows what to do.
NextStart nextStart(unsigned long systemError, bool isElevated);

// The exit code after a start that failed with this system error.
ExitCode exitCodeOfStart(unsigned long systemError);

} // namespace sfx
