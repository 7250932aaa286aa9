// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/windows/win32.h"

namespace sfx {

// What the program is started with: everything that this process was started with (the way to show
// the window, its title and place, the monitor, the file descriptors of the C runtime), and the
// standard handles, which are made inheritable.
STARTUPINFOEXW startupInfoForProgram();

} // namespace sfx
