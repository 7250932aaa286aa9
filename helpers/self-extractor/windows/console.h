// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/start/standardstreams.h"
#include "helpers/self-extractor/windows/win32.h"

namespace sfx {

// Whether the header of this process' file says that it is a program for the console. Windows has
// given it its caller's console, or a new one, before it began. The module itself is a program of the
// graphical subsystem; the packer may change that.
bool isConsoleProgram();

// Finds the standard handles. A program of the graphical subsystem, which has no console window in
// front of a GUI application, joins its caller's console here, if there is one: with this call a
// console application gets what it would have had without the module. Call it once, before
// standardHandle().
void findStandardHandles();

// The flag for CreateProcessW that keeps Windows from opening a new console for the main program, if
// this is a program for the console that its caller has started without one; otherwise 0.
DWORD consoleFlag();

// The handle of a standard stream: the caller's, or else the console's. nullptr if there is none.
HANDLE standardHandle(StandardStream stream);

} // namespace sfx
