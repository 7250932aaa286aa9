// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/windows-kit/row.h"

#include <cstdint>
#include <string>

// Things that need another console, or none. A process has one console at most, so a second process
// of this program does them. The first word of its command line says what.
namespace kit {

struct InConsole
{
    std::string error;  // why nothing was seen; otherwise empty
    std::string screen; // every line, without blanks at its end
    std::uint32_t exitCode = 0;
    std::uint32_t modeBefore = 0; // of the console's output
    std::uint32_t modeAfter = 0;
};

// Runs a program in a new console without a window.
InConsole runInConsole(const Place &place, const std::wstring &program,
                       const std::wstring &arguments);

// Starts a program as the taskbar does: from a process without a console, with a monitor's handle
// where the output's should be. Returns its exit code as text, or why there is none.
std::string startAsTaskbar(const Place &place, const std::wstring &program,
                           const std::wstring &arguments);

// Runs a program in a new console without a window, and sends Ctrl+C to that console when the probe
// in the program has left its notes. Returns the exit code as text, or why there is none.
std::string interruptInConsole(const Place &place, const std::wstring &program,
                               const std::wstring &arguments);

// Closes the console of the process with this id, as a click on the window's cross does.
bool closeConsoleOf(unsigned long id, const Place &place);

// The second process' part. Returns false if the command line is another.
bool serveConsole(int count, wchar_t **arguments, int &exitCode);

} // namespace kit
