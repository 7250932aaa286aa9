// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

// Both emit a flood of log lines, print the seconds until the last line is in the pane, and return
// 0. floodWindow() also prints the largest delay of a timer in milliseconds. It returns an error if
// the pane's text is not exactly the emitted text.
int floodBarePane(int lines);
int floodWindow(int lines);
