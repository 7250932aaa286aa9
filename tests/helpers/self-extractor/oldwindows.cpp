// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/win32.h"

// Linked into a module of the tests' own, this takes the place of the import from KERNEL32: a
// system that knows no jobs in a process' attributes, as Windows was before 10.

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
