// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/win32.h"

// Linked into a module that only the tests use, this replaces the import from KERNEL32. The module
// then sees a system as before Windows 10, where process attributes cannot name a job.

static BOOL WINAPI refuseAttribute(LPPROC_THREAD_ATTRIBUTE_LIST, DWORD, DWORD_PTR, PVOID, SIZE_T,
                                   PVOID, PSIZE_T)
{
    SetLastError(ERROR_NOT_SUPPORTED);
    return FALSE;
}

extern "C" {
extern decltype(&refuseAttribute) importedFunction __asm__("__imp_UpdateProcThreadAttribute");
decltype(&refuseAttribute) importedFunction = refuseAttribute;
}
