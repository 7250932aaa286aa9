// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

// Keeps Wine's desktop there. Wine starts a process for it when the first program with a window comes and
// ends it a second after the last one has gone; what that costs would be put down to the one of the
// measured files that makes a window.

#include <windows.h>

int main(void)
{
    GetDesktopWindow();
    Sleep(INFINITE);
    return 0;
}
