// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/win32.h"

#include <sddl.h>

#include <cstring>

// Linked into a module that only the tests use, these replace imports from ADVAPI32. The module
// then sees the stronger one of an administrator's two tokens, and prints the access rights that it
// gives its folder.

namespace {

template <typename Function>
Function real(const char *name)
{
    Function function = nullptr;
    const FARPROC address = GetProcAddress(GetModuleHandleW(L"advapi32.dll"), name);
    std::memcpy(&function, &address, sizeof function);
    return function;
}

BOOL WINAPI elevatedInformation(HANDLE token, TOKEN_INFORMATION_CLASS which, void *data,
                                DWORD capacity, DWORD *size)
{
    if (which == TokenElevationType) {
        *static_cast<TOKEN_ELEVATION_TYPE *>(data) = TokenElevationTypeFull;
        *size = sizeof(TOKEN_ELEVATION_TYPE);
        return TRUE;
    }
    if (which == TokenIntegrityLevel) {
        auto *label = static_cast<TOKEN_MANDATORY_LABEL *>(data);
        DWORD sidSize = capacity - static_cast<DWORD>(sizeof *label);
        label->Label.Sid = label + 1;
        return CreateWellKnownSid(WinHighLabelSid, nullptr, label + 1, &sidSize);
    }
    using Original = decltype(&elevatedInformation);
    return real<Original>("GetTokenInformation")(token, which, data, capacity, size);
}

BOOL WINAPI printDescription(const wchar_t *text, DWORD revision, PSECURITY_DESCRIPTOR *descriptor,
                             ULONG *size)
{
    char line[512] = "rights=";
    DWORD length = 7;
    for (const wchar_t *unit = text; *unit != 0 && length < sizeof line - 1; ++unit) {
        line[length++] = static_cast<char>(*unit); // SDDL is ASCII
    }
    line[length++] = '\n';
    WriteFile(GetStdHandle(STD_OUTPUT_HANDLE), line, length, &length, nullptr);
    using Original = decltype(&printDescription);
    return real<Original>("ConvertStringSecurityDescriptorToSecurityDescriptorW")(text, revision,
                                                                                  descriptor, size);
}

} // namespace

extern "C" {
extern decltype(&elevatedInformation) importedInformation __asm__("__imp_GetTokenInformation");
decltype(&elevatedInformation) importedInformation = elevatedInformation;
extern decltype(&printDescription)
    importedConversion __asm__("__imp_ConvertStringSecurityDescriptorToSecurityDescriptorW");
decltype(&printDescription) importedConversion = printDescription;
}
