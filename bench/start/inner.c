// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

// The program inside the files that scripts/bench-start measures. It ends at once with the code 7.
// If BENCHSTART_REPORT is set, it first writes to the file of that name how many files and bytes
// are in its folder. So the script notices a module that did not unpack everything, or did not
// start the program.

#include <windows.h>

#include <inttypes.h>
#include <stdio.h>
#include <wchar.h>

static void count(const wchar_t *folder, uint64_t *files, uint64_t *bytes)
{
    wchar_t path[1024];
    WIN32_FIND_DATAW found;
    swprintf(path, 1024, L"%ls\\*", folder);
    const HANDLE search = FindFirstFileW(path, &found);
    if (search == INVALID_HANDLE_VALUE) {
        return;
    }
    do {
        if (wcscmp(found.cFileName, L".") == 0 || wcscmp(found.cFileName, L"..") == 0) {
            continue;
        }
        if (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) {
            swprintf(path, 1024, L"%ls\\%ls", folder, found.cFileName);
            count(path, files, bytes);
        } else {
            ++*files;
            *bytes += ((uint64_t)found.nFileSizeHigh << 32) | found.nFileSizeLow;
        }
    } while (FindNextFileW(search, &found));
    FindClose(search);
}

int main(void)
{
    wchar_t report[1024];
    const DWORD size = GetEnvironmentVariableW(L"BENCHSTART_REPORT", report, 1024);
    if (size > 0 && size < 1024) {
        uint64_t files = 0;
        uint64_t bytes = 0;
        count(L".", &files, &bytes);
        FILE *const out = _wfopen(report, L"w");
        if (out != NULL) {
            fprintf(out, "%" PRIu64 " %" PRIu64 "\n", files, bytes);
            fclose(out);
        }
    }
    return 7;
}
