// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

namespace sfx {

enum class StandardStream { Input, Output, Error };
constexpr unsigned streamCount = 3;

// Flags of STARTUPINFO (Microsoft, processthreadsapi.h). The shell's has no public name.
namespace startup {
constexpr unsigned long standardHandles = 0x100; // STARTF_USESTDHANDLES
constexpr unsigned long hotKey = 0x200;          // STARTF_USEHOTKEY: hStdInput is a key
constexpr unsigned long shellData = 0x400;       // hStdOutput is a monitor or an icon
} // namespace startup

// Where the handle of a standard stream comes from.
enum class StreamSource {
    None,
    Caller,   // the value that this process was started with
    Attached, // the handle that Windows opened when this process joined the console
    Device    // CONIN$ or CONOUT$, which has yet to be opened
};

struct StreamFacts
{
    bool callersIsOpen = false;  // the caller's value is an open handle
    bool hasConsole = false;     // this process has joined its caller's console
    bool attachedIsOpen = false; // Windows has opened a handle for this stream with that
};

// Whether the shell may have put something else than a handle into the field of this stream.
bool isMeantAsHandle(StandardStream stream, unsigned long startupFlags);

// A redirection that the caller has made always wins. Only a missing handle becomes the console's.
StreamSource chooseStream(const StreamFacts &facts);

// The STARTUPINFO flags of the program. It gets those of this process; `passesHandles`: the handle
// fields contain at least one standard handle, so they cannot contain a key or a monitor.
unsigned long flagsForProgram(unsigned long ownFlags, bool passesHandles);

} // namespace sfx
