// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/text.h"
#include "helpers/self-extractor/windows/win32.h"

namespace sfx {

// What the shell is asked to start.
struct ShellStart
{
    const Text &file;          // full path
    const char16_t *arguments; // as in a command line
    const Text &folder;        // working folder; empty: that of this process
    const wchar_t *verb;       // nullptr: the usual one
    HWND owner;                // the question to the user appears in front of it; may be nullptr
};

// The shell asks the user if necessary, and lets a service start the program: it is not in our job
// and inherits neither handles nor environment. `process` stays empty if the shell started nothing
// that one can wait for. Returns false on failure, with the reason in GetLastError().
[[nodiscard]] bool startThroughShell(const ShellStart &start, Handle &process);

// Whether this process has the rights of an administrator.
bool isElevated();

} // namespace sfx
