// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/win32.h"

#include <winternl.h>

#include <cstring>

// Linked into a module that only the tests use, these replace imports through which the module
// changes files. The environment variable KESTRELPACK_TEST_DIES_AT has a number: this process is
// killed when the call of that number begins.

namespace {

template <typename Function>
Function real(const wchar_t *library, const char *name)
{
    Function function = nullptr;
    const FARPROC address = GetProcAddress(GetModuleHandleW(library), name);
    std::memcpy(&function, &address, sizeof function);
    return function;
}

LONG numberOfLastCall()
{
    wchar_t digits[16] = {};
    LONG number = 0;
    GetEnvironmentVariableW(L"KESTRELPACK_TEST_DIES_AT", digits, 15);
    for (const wchar_t *digit = digits; *digit != 0; ++digit) {
        number = 10 * number + (*digit - L'0');
    }
    return number;
}

LONG calls = 0;

void live()
{
    if (InterlockedIncrement(&calls) == numberOfLastCall()) {
        TerminateProcess(GetCurrentProcess(), 99);
    }
}

HANDLE WINAPI createFile(LPCWSTR path, DWORD access, DWORD sharing, LPSECURITY_ATTRIBUTES security,
                         DWORD disposition, DWORD flags, HANDLE pattern)
{
    live();
    return real<decltype(&createFile)>(L"kernel32.dll", "CreateFileW")(path, access, sharing,
                                                                       security, disposition, flags,
                                                                       pattern);
}

BOOL WINAPI createDirectory(LPCWSTR path, LPSECURITY_ATTRIBUTES security)
{
    live();
    return real<decltype(&createDirectory)>(L"kernel32.dll", "CreateDirectoryW")(path, security);
}

BOOL WINAPI writeFile(HANDLE file, LPCVOID data, DWORD size, LPDWORD written, LPOVERLAPPED position)
{
    live();
    return real<decltype(&writeFile)>(L"kernel32.dll", "WriteFile")(file, data, size, written,
                                                                    position);
}

BOOL WINAPI moveFile(LPCWSTR from, LPCWSTR to, DWORD flags)
{
    live();
    return real<decltype(&moveFile)>(L"kernel32.dll", "MoveFileExW")(from, to, flags);
}

BOOL WINAPI setInformation(HANDLE file, FILE_INFO_BY_HANDLE_CLASS which, LPVOID data, DWORD size)
{
    live();
    return real<decltype(&setInformation)>(L"kernel32.dll",
                                           "SetFileInformationByHandle")(file, which, data, size);
}

BOOL WINAPI setTime(HANDLE file, const FILETIME *created, const FILETIME *read,
                    const FILETIME *written)
{
    live();
    return real<decltype(&setTime)>(L"kernel32.dll", "SetFileTime")(file, created, read, written);
}

} // namespace

// clang-format off
#define REPLACE(function, name) \
    extern "C" { \
    extern decltype(&function) imported_##function __asm__("__imp_" name); \
    decltype(&function) imported_##function = function; \
    }
// clang-format on

REPLACE(createFile, "CreateFileW")
REPLACE(createDirectory, "CreateDirectoryW")
REPLACE(writeFile, "WriteFile")
REPLACE(moveFile, "MoveFileExW")
REPLACE(setInformation, "SetFileInformationByHandle")
REPLACE(setTime, "SetFileTime")

// This one is called without an import's pointer.
extern "C" NTSTATUS NTAPI NtCreateFile(PHANDLE file, ACCESS_MASK access,
                                       POBJECT_ATTRIBUTES attributes, PIO_STATUS_BLOCK result,
                                       PLARGE_INTEGER size, ULONG flags, ULONG sharing,
                                       ULONG disposition, ULONG options, PVOID more, ULONG moreSize)
{
    live();
    return real<decltype(&NtCreateFile)>(L"ntdll.dll", "NtCreateFile")(file, access, attributes,
                                                                       result, size, flags, sharing,
                                                                       disposition, options, more,
                                                                       moreSize);
}
