// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

namespace sfx {

// Attaches this process to its caller's console, if there is one, and fills in missing standard
// handles. The module is a program of the graphical subsystem, so that no console window appears in
// front of a GUI application; with this call a console application gets what it would have had
// without the module.
void attachCallersConsole();

} // namespace sfx
