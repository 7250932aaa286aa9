// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

// Random bytes for Qt and 7-Zip, which import RtlGenRandom (SystemFunction036) from advapi32.dll.
// That function really lies in CRYPTBASE.dll, and before the first instruction of the program the
// loader looks for this library in the program's own folder, which may be a folder of downloads or
// a temporary folder: a file of that name would run in the program. The program is therefore linked
// with this function instead, which takes its bytes from the system folder's bcrypt.dll.

#include <windows.h>

#include <bcrypt.h>

namespace {

using Generator = NTSTATUS(WINAPI *)(BCRYPT_ALG_HANDLE, PUCHAR, ULONG, ULONG);

Generator systemGenerator()
{
    const HMODULE library = LoadLibraryExW(L"bcrypt.dll", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
    void *const function
        = library ? reinterpret_cast<void *>(GetProcAddress(library, "BCryptGenRandom")) : nullptr;
    return reinterpret_cast<Generator>(function);
}

} // namespace

// Returns FALSE if the system has no random bytes; the callers have other sources for that case.
extern "C" BOOLEAN WINAPI SystemFunction036(PVOID buffer, ULONG size)
{
    static const Generator generate = systemGenerator();
    return generate
        && generate(nullptr, static_cast<PUCHAR>(buffer), size, BCRYPT_USE_SYSTEM_PREFERRED_RNG)
        >= 0;
}

// The name under which a caller that expects an import looks for the function's address.
extern "C" BOOLEAN(WINAPI *const importedSystemFunction036)(PVOID,
                                                            ULONG) asm("__imp_SystemFunction036");
BOOLEAN(WINAPI *const importedSystemFunction036)(PVOID, ULONG) = SystemFunction036;
