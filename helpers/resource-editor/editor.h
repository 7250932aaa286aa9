// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/resource-editor/arguments.h"

// Exit statuses. A number is never given another meaning.
enum class ExitStatus {
    Done = 0,
    WrongUsage = 2,
    NotAProgram = 3,    // no PE file
    DamagedProgram = 4, // a PE file whose tables cannot be right
    BadIcon = 5,        // the ICO file cannot be used
    NoRoom = 6,         // the program's headers leave no room
    CannotRead = 7,
    CannotWrite = 8,
};

// Does one run of the editor: reads the arguments, edits, writes the log if one is wanted, and on
// failure one line to standard error. The file is then as it was.
ExitStatus runEditor(const Arguments &arguments);
