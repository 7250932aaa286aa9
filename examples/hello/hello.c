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

// The data file is in the program's folder, which is also the working directory.
static int printGreeting(void)
{
    char line[256];
    FILE *const file = fopen("greeting.txt", "r");
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
