// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/start/standardstreams.h"
#include "helpers/self-extractor/windows/win32.h"

namespace sfx {

// Attaches this process to its caller's console, if there is one, and finds the standard handles.
// The module is a program of the graphical subsystem, so that no console window appears in
// front of a GUI application; with this call a console application gets what it would have had
// without the module. Call it once, before standardHandle().
void joinCallersConsole();

// The handle of a standard stream: the caller's, or else the console's. nullptr if there is none.
HANDLE standardHandle(Stream stream);

} // namespace sfx
