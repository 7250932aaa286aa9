// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

// Prints what Windows' own functions find in the version information of the given file, in UTF-8: the
// file version, and a line for each language with its description and original file name.

#include <windows.h>

#include <stdio.h>

static void printText(const BYTE *info, const WORD *translation, const wchar_t *name)
{
    wchar_t path[100];
    swprintf(path, sizeof path / sizeof *path, L"\\StringFileInfo\\%04x%04x\\%ls", translation[0],
             translation[1], name);
    wchar_t *text = NULL;
    UINT length = 0;
    char utf8[400] = "none";
    if (VerQueryValueW(info, path, (void **)&text, &length) && length != 0) {
        WideCharToMultiByte(CP_UTF8, 0, text, -1, utf8, sizeof utf8, NULL, NULL);
    }
    printf(" [%s]", utf8);
}

int wmain(int argc, wchar_t **argv)
{
    static BYTE info[128 * 1024];
    VS_FIXEDFILEINFO *fixed = NULL;
    WORD *translations = NULL;
    UINT size = 0;
    if (argc != 2 || !GetFileVersionInfoW(argv[1], 0, sizeof info, info)
        || !VerQueryValueW(info, L"\\", (void **)&fixed, &size)) {
        printf("no version information\n");
        return 1;
    }
    printf("%u.%u.%u.%u\n", HIWORD(fixed->dwFileVersionMS), LOWORD(fixed->dwFileVersionMS),
           HIWORD(fixed->dwFileVersionLS), LOWORD(fixed->dwFileVersionLS));
    if (!VerQueryValueW(info, L"\\VarFileInfo\\Translation", (void **)&translations, &size)) {
        return 1;
    }
    for (UINT i = 0; i < size / 4; ++i) {
        printf("%04x", translations[2 * i]);
        printText(info, translations + 2 * i, L"FileDescription");
        printText(info, translations + 2 * i, L"OriginalFilename");
        printf("\n");
    }
    return 0;
}
