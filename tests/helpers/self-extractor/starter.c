// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

// Starts Windows programs in ways that a Linux program cannot:
//
//     starter [OPTION...] FILE [TAILFILE]
//
// starts FILE with the arguments in TAILFILE, which is UTF-8 and passed unchanged, waits until FILE
// ends, and prints its full exit code.
//
//     starter --hold=FILE
//
// keeps FILE open, so that others cannot delete it, until a line comes on standard input.
//
//     --temp=DIR    its temporary folder, which Wine does not take from outside; "-": none
//     --show=N      how its window is shown
//     --job         inside a new job that no process may leave
//     --console     in a console; without a terminal, Wine gives a program none
//     --interrupt   sends Ctrl+C to its console shortly after it has begun to unpack

#include <windows.h>

#include <stdio.h>
#include <string.h>
#include <wchar.h>

static void setTemporaryFolder(const wchar_t *folder)
{
    const wchar_t *value = wcscmp(folder, L"-") == 0 ? NULL : folder;
    SetEnvironmentVariableW(L"TEMP", value);
    SetEnvironmentVariableW(L"TMP", value);
}

static const wchar_t *tailOf(const wchar_t *file)
{
    static wchar_t tail[32768];
    static char bytes[4 * 32768];
    FILE *in = file != NULL ? _wfopen(file, L"rb") : NULL;
    if (in != NULL) {
        const size_t size = fread(bytes, 1, sizeof bytes, in);
        const int units = MultiByteToWideChar(CP_UTF8, 0, bytes, (int)size, tail, 32767);
        tail[units] = 0;
        fclose(in);
    }
    return tail;
}

static void joinJob(void)
{
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits;
    const HANDLE job = CreateJobObjectW(NULL, NULL);
    memset(&limits, 0, sizeof limits);
    limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
    SetInformationJobObject(job, JobObjectExtendedLimitInformation, &limits, sizeof limits);
    if (!AssignProcessToJobObject(job, GetCurrentProcess())) {
        printf("no job: %lu\n", GetLastError());
    }
}

static BOOL WINAPI ignoreEvent(DWORD event)
{
    return event == CTRL_C_EVENT;
}

static void openConsole(STARTUPINFOW *startup)
{
    FreeConsole();
    if (!AllocConsole()) {
        printf("no console: %lu\n", GetLastError());
    }
    SetStdHandle(STD_INPUT_HANDLE, startup->hStdInput);
    SetStdHandle(STD_OUTPUT_HANDLE, startup->hStdOutput);
    SetStdHandle(STD_ERROR_HANDLE, startup->hStdError);
    SetConsoleCtrlHandler(ignoreEvent, TRUE);
}

static int hold(const wchar_t *path)
{
    const HANDLE file = CreateFileW(path, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, NULL,
                                    OPEN_EXISTING, 0, NULL);
    printf("held=%d\n", file != INVALID_HANDLE_VALUE);
    fflush(stdout);
    getchar();
    return file != INVALID_HANDLE_VALUE ? 0 : 1;
}

static void interruptUnpacking(void)
{
    static wchar_t pattern[32768];
    WIN32_FIND_DATAW found;
    HANDLE search = INVALID_HANDLE_VALUE;
    GetTempPathW(32000, pattern);
    wcscat(pattern, L"kp-*.lock");
    for (int i = 0; i < 2000 && search == INVALID_HANDLE_VALUE; ++i) {
        Sleep(5);
        search = FindFirstFileW(pattern, &found);
    }
    Sleep(50);
    GenerateConsoleCtrlEvent(CTRL_C_EVENT, 0);
}

int wmain(int argc, wchar_t **argv)
{
    static wchar_t line[65536];
    STARTUPINFOW startup;
    PROCESS_INFORMATION process;
    BOOL interrupts = FALSE;
    DWORD code = 0;
    int at = 1;
    if (argc == 2 && wcsncmp(argv[1], L"--hold=", 7) == 0) {
        return hold(argv[1] + 7);
    }
    memset(&startup, 0, sizeof startup);
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = GetStdHandle(STD_INPUT_HANDLE);
    startup.hStdOutput = GetStdHandle(STD_OUTPUT_HANDLE);
    startup.hStdError = GetStdHandle(STD_ERROR_HANDLE);
    for (; at < argc && wcsncmp(argv[at], L"--", 2) == 0; ++at) {
        const wchar_t *value = wcschr(argv[at], L'=');
        if (wcsncmp(argv[at], L"--temp=", 7) == 0) {
            setTemporaryFolder(value + 1);
        } else if (wcsncmp(argv[at], L"--show=", 7) == 0) {
            startup.dwFlags |= STARTF_USESHOWWINDOW;
            startup.wShowWindow = (WORD)wcstoul(value + 1, NULL, 0);
        } else if (wcscmp(argv[at], L"--job") == 0) {
            joinJob();
        } else if (wcscmp(argv[at], L"--console") == 0) {
            openConsole(&startup);
        } else if (wcscmp(argv[at], L"--interrupt") == 0) {
            interrupts = TRUE;
        }
    }
    if (at >= argc) {
        return 98;
    }
    wcscpy(line, L"\"");
    wcscat(line, argv[at]);
    wcscat(line, L"\"");
    wcscat(line, tailOf(at + 1 < argc ? argv[at + 1] : NULL));
    if (!CreateProcessW(argv[at], line, NULL, NULL, TRUE, 0, NULL, NULL, &startup, &process)) {
        printf("failed=%lu\n", GetLastError());
        return 99;
    }
    if (interrupts) {
        interruptUnpacking();
    }
    WaitForSingleObject(process.hProcess, INFINITE);
    GetExitCodeProcess(process.hProcess, &code);
    printf("ended=%lu\n", code);
    fflush(stdout);
    return (int)code;
}
