// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

// How many handles this process has. Wine does not count them; there, and on Windows too, the places tell
// that the next objects get: the tables hand out free places first, so a place that is never given back
// moves the next one on.
struct HandleCount
{
    unsigned long gdi = 0;
    unsigned long user = 0;
    unsigned long nextGdi = 0;  // the highest place of the next 64 bitmaps
    unsigned long nextUser = 0; // the highest place of the next 64 icons
};

HandleCount countHandles();
