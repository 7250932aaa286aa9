// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

// The whole program: shows the window and runs until the user quits. Returns the exit status of the
// event loop. Our own command line has no options; Qt takes its own out of `argc` and `argv`.
int runApplication(int &argc, char **argv);
