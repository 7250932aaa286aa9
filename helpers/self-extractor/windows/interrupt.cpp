// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/interrupt.h"

#include "helpers/self-extractor/windows/detachonclose.h"
#include "helpers/self-extractor/windows/win32.h"

namespace sfx {

namespace {

volatile LONG interrupted = 0;

// Windows calls this in another thread.
BOOL WINAPI onConsoleEvent(DWORD event)
{
    InterlockedExchange(&interrupted, 1);
    if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT) {
        detachRunningJob();
        // Windows would end the process as soon as this returns; the main thread ends it instead.
        Sleep(INFINITE);
    }
    return TRUE;
}

} // namespace

bool isInterrupted()
{
    return InterlockedCompareExchange(&interrupted, 0, 0) != 0;
}

void handleConsoleEvents()
{
    // A handler, not the inherited "ignore" flag: the application must still get the events.
    SetConsoleCtrlHandler(onConsoleEvent, TRUE);
}

} // namespace sfx
