// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

// Loads each given program file as an image, as Windows does for its resources. Prints one line for
// each file: the names of its icon groups, the size of the icon made from each group, and the size
// of its version resource. Ends with 1 if a file cannot be loaded.

#include <windows.h>

#include <stdio.h>

static BOOL CALLBACK showGroup(HMODULE module, LPCWSTR type, LPWSTR name, LONG_PTR unused)
{
    (void)unused;
    const HRSRC place = FindResourceW(module, name, type);
    BYTE *const group = place ? LockResource(LoadResource(module, place)) : NULL;
    const int id = group ? LookupIconIdFromDirectoryEx(group, TRUE, 32, 32, 0) : 0;
    const HRSRC image = id ? FindResourceW(module, MAKEINTRESOURCEW(id), (LPCWSTR)RT_ICON) : NULL;
    BYTE *const bits = image ? LockResource(LoadResource(module, image)) : NULL;
    const HICON icon = bits
        ? CreateIconFromResourceEx(bits, SizeofResource(module, image), TRUE, 0x00030000, 0, 0, 0)
        : NULL;
    ICONINFO info;
    BITMAP bitmap = {0};
    if (icon && GetIconInfo(icon, &info)) {
        GetObjectW(info.hbmMask, sizeof bitmap, &bitmap);
    }
    if (IS_INTRESOURCE(name)) {
        printf(" %u=%ld", (unsigned)(ULONG_PTR)name, bitmap.bmWidth);
    } else {
        printf(" %ls=%ld", name, bitmap.bmWidth);
    }
    return TRUE;
}

int wmain(int argc, wchar_t **argv)
{
    int failures = 0;
    for (int i = 1; i < argc; ++i) {
        const HMODULE module = LoadLibraryExW(argv[i], NULL, LOAD_LIBRARY_AS_IMAGE_RESOURCE);
        if (!module) {
            printf("cannot be loaded: %lu\n", GetLastError());
            ++failures;
            continue;
        }
        printf("groups:");
        EnumResourceNamesW(module, (LPCWSTR)RT_GROUP_ICON, showGroup, 0);
        const HRSRC version = FindResourceW(module, MAKEINTRESOURCEW(1), (LPCWSTR)RT_VERSION);
        printf(" version: %lu\n", version ? SizeofResource(module, version) : 0UL);
        FreeLibrary(module);
    }
    return failures ? 1 : 0;
}
