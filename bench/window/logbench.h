// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

// A flood of log lines. Both print the seconds from the first line to the last being in the pane;
// floodWindow() also how late a timer was, in milliseconds, and fails when the pane's text is not
// exactly what was emitted.
int floodBarePane(int lines);
int floodWindow(int lines);
