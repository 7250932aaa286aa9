/* SPDX-FileCopyrightText: 2026 The Kestrelpack developers
 * SPDX-License-Identifier: MIT
 *
 * The application that the tests pack: tells how it was started, in UTF-8, and ends as it is told.
 * What it is to do stands anywhere in its command line:
 *
 *     --exit=N    the exit code, 7 without it
 *     --wait      waits for a line on standard input before it ends
 *     --echo      copies a line from standard input to standard error
 */
#include <windows.h>

#include <stdio.h>
#include <string.h>
#include <wchar.h>

static void tell(const char *key, const wchar_t *value)
{
    static char bytes[3 * 32768];
    WideCharToMultiByte(CP_UTF8, 0, value, -1, bytes, sizeof bytes, NULL, NULL);
    printf("%s=%s\n", key, bytes);
}

static void tellVariable(const wchar_t *name)
{
    static wchar_t value[32768];
    static char key[64];
    if (GetEnvironmentVariableW(name, value, 32768) != 0) {
        WideCharToMultiByte(CP_UTF8, 0, name, -1, key, sizeof key, NULL, NULL);
        tell(key, value);
    }
}

static void tellStart(void)
{
    static wchar_t buffer[32768];
    STARTUPINFOW startup;
    const wchar_t *line = GetCommandLineW();
    const wchar_t *tail = *line == L'"' ? wcschr(line + 1, L'"') : NULL;
    tell("line", line);
    tell("tail", tail != NULL ? tail + 1 : line);
    GetCurrentDirectoryW(32768, buffer);
    tell("folder", buffer);
    GetModuleFileNameW(NULL, buffer, 32768);
    tell("program", buffer);
    tellVariable(L"KESTRELPACK_EXE");
    tellVariable(L"KESTRELPACK_EXE_DIR");
    tellVariable(L"KESTRELPACK_DIR");
    tellVariable(L"KESTRELPACK_CWD");
    GetStartupInfoW(&startup);
    if (startup.dwFlags & STARTF_USESHOWWINDOW) {
        printf("show=%u\n", startup.wShowWindow);
    }
    fflush(stdout);
}

int wmain(void)
{
    const wchar_t *line = GetCommandLineW();
    const wchar_t *code = wcsstr(line, L"--exit=");
    tellStart();
    if (wcsstr(line, L"--echo") != NULL) {
        char text[100];
        if (fgets(text, sizeof text, stdin) != NULL) {
            fputs(text, stderr);
        }
    }
    if (wcsstr(line, L"--wait") != NULL) {
        getchar();
    }
    ExitProcess(code != NULL ? (UINT)wcstoul(code + 7, NULL, 0) : 7);
}
