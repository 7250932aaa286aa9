// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

// Keeps Wine's desktop process alive. Wine starts that process with the first program that has a
// window, and ends it one second after the last one has ended. Without this program, that cost
// would be counted for the measured file that opens a window.

#include <windows.h>

int main(void)
{
    GetDesktopWindow();
    Sleep(INFINITE);
    return 0;
}
