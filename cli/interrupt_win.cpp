// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "cli/interrupt.h"

#include <atomic>

#include <windows.h>

namespace {

std::atomic<InterruptWatcher *> currentWatcher = nullptr;

// Windows calls this on a thread that it creates. If the console closes, Windows ends the program
// when this function returns; so it does not return, and the main thread ends the program.
BOOL WINAPI passEventOn(DWORD event)
{
    InterruptWatcher *const watcher = currentWatcher;
    if (!watcher) {
        return FALSE;
    }
    QMetaObject::invokeMethod(
        watcher, [watcher, event] { emit watcher->interrupted(static_cast<int>(event)); },
        Qt::QueuedConnection);
    if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT) {
        Sleep(INFINITE);
    }
    return TRUE;
}

} // namespace

InterruptWatcher::InterruptWatcher(QObject *parent) : QObject(parent)
{
    currentWatcher = this;
    SetConsoleCtrlHandler(passEventOn, TRUE);
}

InterruptWatcher::~InterruptWatcher()
{
    SetConsoleCtrlHandler(passEventOn, FALSE);
    currentWatcher = nullptr;
}

void endAsInterrupted(int)
{
    ExitProcess(STATUS_CONTROL_C_EXIT);
}

// Five seconds after its console was closed, Windows kills the program. Three of them remain for
// removing the job's files.
std::chrono::milliseconds timeToStop(int cause)
{
    const bool windowsWaits = cause == CTRL_C_EVENT || cause == CTRL_BREAK_EVENT;
    return std::chrono::seconds(windowsWaits ? 5 : 2);
}

void killProcess(qint64 id)
{
    if (id <= 0) {
        return;
    }
    if (const HANDLE process = OpenProcess(PROCESS_TERMINATE, FALSE, static_cast<DWORD>(id))) {
        TerminateProcess(process, STATUS_CONTROL_C_EXIT);
        CloseHandle(process);
    }
}
