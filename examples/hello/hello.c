// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

// The example application. It prints the greeting from its data file, and what a packed program
// sees of its environment. "--exit N" makes it end with the exit code N.

#include <windows.h>

#include <stdio.h>
#include <stdlib.h>
#include <wchar.h>

// Prints UTF-8, both to a console and to a pipe.
static void print(const wchar_t *text)
{
    char bytes[4 * MAX_PATH];
    const int size = WideCharToMultiByte(CP_UTF8, 0, text, -1, bytes, sizeof bytes, NULL, NULL);
    if (size > 0) {
        fputs(bytes, stdout);
    }
}

// Opens a data file in the program's own folder. The working directory may be another one.
static FILE *openData(const wchar_t *name)
{
    static wchar_t path[32768];
    const size_t room = sizeof path / sizeof *path;
    const DWORD size = GetModuleFileNameW(NULL, path, (DWORD)room);
    wchar_t *const last = size > 0 && size < room ? wcsrchr(path, L'\\') : NULL;
    if (!last || (size_t)(last - path) + 2 + wcslen(name) > room) {
        return NULL;
    }
    wcscpy(last + 1, name);
    return _wfopen(path, L"r");
}

static int printGreeting(void)
{
    char line[256];
    FILE *const file = openData(L"greeting.txt");
    if (!file) {
        puts("greeting.txt is not here.");
        return 0;
    }
    while (fgets(line, sizeof line, file)) {
        fputs(line, stdout);
    }
    fclose(file);
    return 1;
}

int wmain(int argc, wchar_t **argv)
{
    wchar_t folder[MAX_PATH];
    int exitCode = 0;

    SetConsoleOutputCP(CP_UTF8);
    if (!printGreeting()) {
        exitCode = 1;
    }
    if (GetCurrentDirectoryW(MAX_PATH, folder)) {
        print(L"Folder: ");
        print(folder);
        puts("");
    }
    for (int i = 1; i < argc; ++i) {
        printf("Argument %d: ", i);
        print(argv[i]);
        puts("");
        if (wcscmp(argv[i], L"--exit") == 0 && i + 1 < argc) {
            exitCode = _wtoi(argv[i + 1]);
        }
    }
    return exitCode;
}
