// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/resource-editor/arguments.h"

// The exit statuses. A number never gets another meaning.
enum class ExitStatus {
    Done = 0,
    WrongUsage = 2,
    NotAProgram = 3,    // not a PE file
    DamagedProgram = 4, // a PE file whose tables contradict each other
    BadIcon = 5,        // the ICO file cannot be used
    NoRoom = 6,         // the program's headers have no room for what is added
    CannotRead = 7,
    CannotWrite = 8,
};

// How a run ended.
struct EditorResult
{
    ExitStatus status = ExitStatus::Done;
    std::string message; // one line for standard error; empty on success
};

// Does one run of the editor: reads the arguments, edits the file and writes the log if one is wanted. If
// the run fails, the file is unchanged.
EditorResult runEditor(const Arguments &arguments);

// Does the run, prints the message to standard error and returns the exit status.
int runEditorProgram(const Arguments &arguments);
