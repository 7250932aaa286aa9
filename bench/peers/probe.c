// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

// The program that scripts/compare-peers packs. It writes its arguments to the file of the variable
// PROBE_REPORT. With "wait" as its first argument it stays; otherwise it ends with the exit code 42.

#include <windows.h>

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

int main(int argc, char **argv)
{
    const char *const report = getenv("PROBE_REPORT");
    FILE *const file = report ? fopen(report, "w") : NULL;
    if (file) {
        for (int i = 1; i < argc; ++i) {
            fprintf(file, "<%s>", argv[i]);
        }
        fclose(file);
    }
    if (argc > 1 && strcmp(argv[1], "wait") == 0) {
        Sleep(INFINITE);
    }
    return 42;
}
