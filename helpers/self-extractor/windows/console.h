// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

namespace sfx {

/// The module is a program of the graphical subsystem, so that no console window flashes up in
/// front of an application with windows. This gives a console application what it would have had
/// without the module: the console of the caller, if there is one, and standard handles.
void joinCallersConsole();

/// From here on Ctrl+C and its like do not end this process, and closing the console waits until it
/// has cleaned up. The application gets them as well, once it runs.
void outliveConsoleEvents();

/// Whether there was such an event.
bool isInterrupted();

} // namespace sfx
