// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/console.h"

#include "helpers/self-extractor/base/thread.h"
#include "helpers/self-extractor/windows/job.h"

namespace sfx {

namespace {

// Redirected handles stay as they are; the others become the console's.
void fillStandardHandle(DWORD which, const wchar_t *device)
{
    const HANDLE present = GetStdHandle(which);
    if (present != nullptr && present != INVALID_HANDLE_VALUE) {
        return;
    }
    SECURITY_ATTRIBUTES inheritable = {sizeof inheritable, nullptr, TRUE};
    const HANDLE handle = CreateFileW(device, GENERIC_READ | GENERIC_WRITE,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE, &inheritable,
                                      OPEN_EXISTING, 0, nullptr);
    if (handle != INVALID_HANDLE_VALUE) {
        SetStdHandle(which, handle);
    }
}

volatile LONG interrupted = 0;
constinit Monitor jobMonitor;
constinit Job *runningJob = nullptr;

void setRunningJob(Job *job)
{
    const Locked locked(jobMonitor);
    runningJob = job;
}

// In a thread of the system's.
BOOL WINAPI onConsoleEvent(DWORD event)
{
    InterlockedExchange(&interrupted, 1);
    if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT) {
        {
            const Locked locked(jobMonitor);
            if (runningJob != nullptr) {
                runningJob->letGo();
            }
        }
        Sleep(INFINITE); // the process would be ended on return; the main thread ends it instead
    }
    return TRUE;
}

} // namespace

void joinCallersConsole()
{
    if (AttachConsole(ATTACH_PARENT_PROCESS)) {
        fillStandardHandle(STD_INPUT_HANDLE, L"CONIN$");
        fillStandardHandle(STD_OUTPUT_HANDLE, L"CONOUT$");
        fillStandardHandle(STD_ERROR_HANDLE, L"CONOUT$");
    }
}

bool isInterrupted()
{
    return InterlockedCompareExchange(&interrupted, 0, 0) != 0;
}

void outliveConsoleEvents()
{
    // A handler, not the inherited "ignore" flag: the application must still get the events.
    SetConsoleCtrlHandler(onConsoleEvent, TRUE);
}

JobOutlivesConsole::JobOutlivesConsole(Job &job)
{
    setRunningJob(&job);
}

JobOutlivesConsole::~JobOutlivesConsole()
{
    setRunningJob(nullptr);
}

} // namespace sfx
