// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/startupinfo.h"

#include "helpers/self-extractor/windows/console.h"

namespace sfx {

namespace {

// Makes a standard handle inheritable, or returns nullptr.
HANDLE inheritable(StandardStream stream)
{
    const HANDLE handle = standardHandle(stream);
    return handle != nullptr
            && SetHandleInformation(handle, HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT)
        ? handle
        : nullptr;
}

} // namespace

STARTUPINFOEXW startupInfoForProgram()
{
    STARTUPINFOEXW extended = {};
    STARTUPINFOW &startup = extended.StartupInfo;
    startup.cb = sizeof startup;
    GetStartupInfoW(&startup);
    startup.cb = sizeof extended;
    startup.lpReserved = nullptr;
    // This process' own desktop, which need not be the one that the caller named.
    startup.lpDesktop = nullptr;
    const HANDLE input = inheritable(StandardStream::Input);
    const HANDLE output = inheritable(StandardStream::Output);
    const HANDLE error = inheritable(StandardStream::Error);
    const bool passesHandles = input != nullptr || output != nullptr || error != nullptr;
    if (passesHandles) {
        startup.hStdInput = input;
        startup.hStdOutput = output;
        startup.hStdError = error;
    }
    startup.dwFlags = flagsForProgram(startup.dwFlags, passesHandles);
    return extended;
}

} // namespace sfx
