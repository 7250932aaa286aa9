// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/win32.h"

// Linked into a module that only the tests use, this replaces the import from KERNEL32. A second
// passes each time the module looks at the clock, as on a machine that is too slow for everything.

static ULONGLONG WINAPI oneSecondLater()
{
    static ULONGLONG now = 0;
    return now += 1000;
}

extern "C" {
extern decltype(&oneSecondLater) importedFunction __asm__("__imp_GetTickCount64");
decltype(&oneSecondLater) importedFunction = oneSecondLater;
}
