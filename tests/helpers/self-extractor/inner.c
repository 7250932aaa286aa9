/* SPDX-FileCopyrightText: 2026 The Kestrelpack developers
 * SPDX-License-Identifier: MIT
 *
 * The application that the tests pack: tells how it was started, in UTF-8, and ends as it is told.
 * The exit code is the number behind "--exit=" in the command line, 7 without it. With "--memory"
 * it waits for a line on standard input first, so that the test can look at the module meanwhile.
 *
 * Outside a package, "--run FILE HEX" starts FILE with the arguments that HEX spells in UTF-8,
 * exactly as they stand, and tells the exit code in full: shells on other systems can do neither.
 * The temporary folder of FILE is KESTRELPACK_TEST_TEMP; Wine does not take TEMP from outside.
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

static int runVerbatim(const wchar_t *file, const wchar_t *hex)
{
    static wchar_t line[32768];
    static char bytes[32768];
    static wchar_t temporary[32768];
    STARTUPINFOW startup;
    PROCESS_INFORMATION process;
    DWORD code = 0;
    size_t size = 0;
    for (; hex[0] != 0 && hex[1] != 0; hex += 2) {
        unsigned value = 0;
        swscanf(hex, L"%2x", &value);
        bytes[size++] = (char)value;
    }
    wsprintfW(line, L"\"%s\"", file);
    size_t used = wcslen(line);
    MultiByteToWideChar(CP_UTF8, 0, bytes, -1, line + used, (int)(32768 - used));
    if (GetEnvironmentVariableW(L"KESTRELPACK_TEST_TEMP", temporary, 32768) != 0) {
        SetEnvironmentVariableW(L"TEMP", temporary);
        SetEnvironmentVariableW(L"TMP", temporary);
    }
    memset(&startup, 0, sizeof startup);
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = GetStdHandle(STD_INPUT_HANDLE);
    startup.hStdOutput = GetStdHandle(STD_OUTPUT_HANDLE);
    startup.hStdError = GetStdHandle(STD_ERROR_HANDLE);
    if (!CreateProcessW(file, line, NULL, NULL, TRUE, 0, NULL, NULL, &startup, &process)) {
        return 99;
    }
    WaitForSingleObject(process.hProcess, INFINITE);
    GetExitCodeProcess(process.hProcess, &code);
    printf("ended=%lu\n", code);
    fflush(stdout);
    return (int)code;
}

int wmain(int argc, wchar_t **argv)
{
    static wchar_t buffer[32768];
    if (argc >= 3 && wcscmp(argv[1], L"--run") == 0) {
        return runVerbatim(argv[2], argc > 3 ? argv[3] : L"");
    }
    const wchar_t *line = GetCommandLineW();
    const wchar_t *code = wcsstr(line, L"--exit=");
    const wchar_t *tail = wcschr(line + 1, L'"');
    tell("tail", tail != NULL ? tail + 1 : line);
    GetCurrentDirectoryW(32768, buffer);
    tell("folder", buffer);
    GetModuleFileNameW(NULL, buffer, 32768);
    tell("program", buffer);
    fflush(stdout);
    if (wcsstr(line, L"--memory") != NULL) {
        getchar();
    }
    ExitProcess(code != NULL ? (UINT)wcstoul(code + 7, NULL, 0) : 7);
}
