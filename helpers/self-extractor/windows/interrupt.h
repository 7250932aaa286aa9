// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

namespace sfx {

// From this call on, Ctrl+C and the like do not end this process, and closing the console waits
// until this process has cleaned up. The application gets these events too, once it runs.
void handleConsoleEvents();

// Whether such an event has occurred.
bool isInterrupted();

} // namespace sfx
