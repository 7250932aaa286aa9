// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

// Runs the whole program: shows the window and returns when the user quits. Returns the exit status
// of the event loop. We have no command line options; Qt removes its own from `argc` and `argv`.
int runApplication(int &argc, char **argv);
