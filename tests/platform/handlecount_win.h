// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

// The number of handles of this process. Wine does not count handles. So the test also looks at the
// indexes that the next objects get, on both systems: the tables give out free indexes first, so a
// leaked index moves the next one up.
struct HandleCount
{
    unsigned long gdi = 0;
    unsigned long user = 0;
    unsigned long nextGdi = 0;  // the highest index of the next 64 bitmaps
    unsigned long nextUser = 0; // the highest index of the next 64 icons
};

HandleCount countHandles();
