// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

// Prints "idle=1" and waits for the end of standard input. It opens no window and no desktop. While a
// program runs, Wine's services run.

#include <stdio.h>

int wmain(void)
{
    puts("idle=1");
    fflush(stdout);
    while (getchar() != EOF) {
    }
    return 0;
}
