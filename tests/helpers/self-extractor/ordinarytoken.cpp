// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/win32.h"

#include <cstring>

// Linked into a module that only the tests use, this replaces an import from ADVAPI32. Under Wine,
// every process has administrator's rights. The module then sees an ordinary user's token.

static BOOL WINAPI ordinaryInformation(HANDLE token, TOKEN_INFORMATION_CLASS which, void *data,
                                       DWORD capacity, DWORD *size)
{
    if (which == TokenElevation) {
        static_cast<TOKEN_ELEVATION *>(data)->TokenIsElevated = 0;
        *size = sizeof(TOKEN_ELEVATION);
        return TRUE;
    }
    if (which == TokenElevationType) {
        *static_cast<TOKEN_ELEVATION_TYPE *>(data) = TokenElevationTypeLimited;
        *size = sizeof(TOKEN_ELEVATION_TYPE);
        return TRUE;
    }
    decltype(&ordinaryInformation) original = nullptr;
    const FARPROC address
        = GetProcAddress(GetModuleHandleW(L"advapi32.dll"), "GetTokenInformation");
    std::memcpy(&original, &address, sizeof original);
    return original(token, which, data, capacity, size);
}

extern "C" {
extern decltype(&ordinaryInformation) importedInformation __asm__("__imp_GetTokenInformation");
decltype(&ordinaryInformation) importedInformation = ordinaryInformation;
}
