// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/fast-archiver/machine.h"

#include <algorithm>
#include <thread>

#include <windows.h>

namespace fast {

namespace {

std::atomic<bool> *stoppedFlag = nullptr;

BOOL WINAPI stop(DWORD)
{
    *stoppedFlag = true;
    return TRUE;
}

} // namespace

unsigned processorCount()
{
    return std::max(1U, std::thread::hardware_concurrency());
}

std::uint64_t physicalMemory()
{
    MEMORYSTATUSEX status = {};
    status.dwLength = sizeof status;
    return GlobalMemoryStatusEx(&status) != 0 ? status.ullTotalPhys : 0;
}

void stopWhenInterrupted(std::atomic<bool> &stopped)
{
    stoppedFlag = &stopped;
    SetConsoleCtrlHandler(stop, TRUE);
}

void removeFile(const pe::NativePath &path)
{
    DeleteFileW(pe::extendedPath(path).c_str());
}

} // namespace fast
