// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/console.h"

#include "helpers/self-extractor/windows/win32.h"

namespace sfx {

namespace {

// Redirected handles stay unchanged; missing ones become the console's.
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

} // namespace

void attachCallersConsole()
{
    if (AttachConsole(ATTACH_PARENT_PROCESS)) {
        fillStandardHandle(STD_INPUT_HANDLE, L"CONIN$");
        fillStandardHandle(STD_OUTPUT_HANDLE, L"CONOUT$");
        fillStandardHandle(STD_ERROR_HANDLE, L"CONOUT$");
    }
}

} // namespace sfx
