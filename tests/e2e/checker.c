// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

// The main program of the end-to-end test. It compares its folder with manifest.txt, which lies
// there in UTF-8, one line for each entry: "D <path>" for a folder, "F <size> <FNV-1a of the
// content> <path>" for a file. It prints the differences. It ends with 7 if there are none,
// otherwise with 1.

#include <windows.h>

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

static int differences = 0;

static void complain(const char *what, const char *path)
{
    printf("%s: %s\n", what, path);
    ++differences;
}

static void widen(const char *path, wchar_t *wide)
{
    MultiByteToWideChar(CP_UTF8, 0, path, -1, wide, 1024);
    for (; *wide; ++wide) {
        if (*wide == L'/') {
            *wide = L'\\';
        }
    }
}

static void checkFolder(const char *path)
{
    wchar_t wide[1024];
    widen(path, wide);
    const DWORD attributes = GetFileAttributesW(wide);
    if (attributes == INVALID_FILE_ATTRIBUTES || !(attributes & FILE_ATTRIBUTE_DIRECTORY)) {
        complain("no such folder", path);
    }
}

static void checkFile(unsigned long long size, unsigned long long hash, const char *path)
{
    static unsigned char buffer[1 << 20];
    wchar_t wide[1024];
    unsigned long long actualSize = 0;
    unsigned long long actualHash = 0xcbf29ce484222325ULL;
    DWORD count = 0;

    widen(path, wide);
    const HANDLE file
        = CreateFileW(wide, GENERIC_READ, FILE_SHARE_READ, NULL, OPEN_EXISTING, 0, NULL);
    if (file == INVALID_HANDLE_VALUE) {
        complain("no such file", path);
        return;
    }
    while (ReadFile(file, buffer, sizeof buffer, &count, NULL) && count > 0) {
        for (DWORD i = 0; i < count; ++i) {
            actualHash = (actualHash ^ buffer[i]) * 0x100000001b3ULL;
        }
        actualSize += count;
    }
    CloseHandle(file);
    if (actualSize != size || actualHash != hash) {
        complain("other content", path);
    }
}

int wmain(void)
{
    char line[4096];
    int entries = 0;
    FILE *const manifest = fopen("manifest.txt", "rb");
    if (!manifest) {
        puts("no manifest.txt in the working directory");
        return 1;
    }
    while (fgets(line, sizeof line, manifest)) {
        line[strcspn(line, "\n")] = 0;
        ++entries;
        if (line[0] == 'D') {
            checkFolder(line + 2);
        } else {
            char *end = NULL;
            const unsigned long long size = strtoull(line + 2, &end, 10);
            const unsigned long long hash = strtoull(end + 1, &end, 16);
            checkFile(size, hash, end + 1);
        }
    }
    fclose(manifest);
    printf("%d entries, %d differences\n", entries, differences);
    return entries > 0 && differences == 0 ? 7 : 1;
}
