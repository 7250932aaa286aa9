// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/win32.h"

#include <atomic>

// Linked into a module that only the tests use, this replaces the import from KERNEL32. The module
// then sees that everything takes seconds, as if a virus scanner looked into each file that it
// closes.

static BOOL WINAPI jump(LARGE_INTEGER *ticks)
{
    constexpr LONGLONG many = 1000000000;
    static constinit std::atomic<LONGLONG> now = 0;
    ticks->QuadPart = now += many;
    return TRUE;
}

extern "C" {
extern decltype(&jump) importedFunction __asm__("__imp_QueryPerformanceCounter");
decltype(&jump) importedFunction = jump;
}
