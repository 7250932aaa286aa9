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
//     starter --seize=FOLDER
//
// waits until a produced file has unpacked main.exe below FOLDER, and keeps it open in the same way,
// so that others cannot even read it.
//
//     --profile=DIR its profile's folder for local data; "-": none
//     --temp=DIR    its temporary folder, which Wine does not take from outside; "-": none
//     --show=N      how its window is shown
//     --job         inside a new job that no process may leave
//     --console     in a console; without a terminal, Wine gives a program none
//     --interrupt   sends Ctrl+C to its console shortly after it has begun to unpack
//     --console-later
//                   this process opens its console only after it has made FILE's process, which has
//                   inherited its standard handles and no console
//     --title=TEXT  a window title, as from a shortcut
//     --number=FILE opens FILE as its file descriptor 3, as the C runtime does it
//     --unseen      where nobody can see its windows, and without standard handles
//     --detached    without a console

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

static void setProfile(const wchar_t *folder)
{
    SetEnvironmentVariableW(L"LOCALAPPDATA", wcscmp(folder, L"-") == 0 ? NULL : folder);
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

// A table as the C runtime hands it on: the number of descriptors, their flags, their handles.
static void openDescriptor(STARTUPINFOW *startup, const wchar_t *path)
{
    static BYTE table[sizeof(DWORD) + 4 + 4 * sizeof(HANDLE)];
    SECURITY_ATTRIBUTES inheritable = {sizeof inheritable, NULL, TRUE};
    const DWORD count = 4;
    const BYTE flags[4] = {0, 0, 0, 1}; // open
    HANDLE handles[4] = {INVALID_HANDLE_VALUE, INVALID_HANDLE_VALUE, INVALID_HANDLE_VALUE, NULL};
    handles[3]
        = CreateFileW(path, GENERIC_WRITE, FILE_SHARE_READ, &inheritable, CREATE_ALWAYS, 0, NULL);
    memcpy(table, &count, sizeof count);
    memcpy(table + sizeof count, flags, sizeof flags);
    memcpy(table + sizeof count + sizeof flags, handles, sizeof handles);
    startup->lpReserved2 = table;
    startup->cbReserved2 = sizeof table;
}

static void makeUnseen(STARTUPINFOW *startup)
{
    static wchar_t desktop[] = L"Unseen\\default";
    startup->lpDesktop = desktop;
    startup->dwFlags &= ~(DWORD)STARTF_USESTDHANDLES;
    SetStdHandle(STD_INPUT_HANDLE, NULL);
    SetStdHandle(STD_OUTPUT_HANDLE, NULL);
    SetStdHandle(STD_ERROR_HANDLE, NULL);
}

// Returns TRUE if the option is one of these.
static BOOL changeStartup(STARTUPINFOW *startup, wchar_t *option)
{
    if (wcsncmp(option, L"--title=", 8) == 0) {
        startup->lpTitle = option + 8;
        startup->dwFlags |= STARTF_TITLEISLINKNAME;
    } else if (wcsncmp(option, L"--number=", 9) == 0) {
        openDescriptor(startup, option + 9);
    } else if (wcscmp(option, L"--unseen") == 0) {
        makeUnseen(startup);
    } else {
        return FALSE;
    }
    return TRUE;
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

static int seize(const wchar_t *folder)
{
    static wchar_t path[32768];
    WIN32_FIND_DATAW found;
    for (;; Sleep(1)) {
        HANDLE search;
        HANDLE file;
        wsprintfW(path, L"%s\\kp-*", folder);
        search = FindFirstFileW(path, &found);
        if (search == INVALID_HANDLE_VALUE) {
            continue;
        }
        do {
            wsprintfW(path, L"%s\\%s\\main\\main.exe", folder, found.cFileName);
            file = CreateFileW(path, GENERIC_READ, 0, NULL, OPEN_EXISTING, 0, NULL);
        } while (file == INVALID_HANDLE_VALUE && FindNextFileW(search, &found));
        FindClose(search);
        if (file != INVALID_HANDLE_VALUE) {
            printf("held=1\n");
            fflush(stdout);
            getchar();
            return 0;
        }
    }
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
    DWORD flags = 0;
    DWORD code = 0;
    int at = 1;
    if (argc == 2 && wcsncmp(argv[1], L"--hold=", 7) == 0) {
        return hold(argv[1] + 7);
    }
    if (argc == 2 && wcsncmp(argv[1], L"--seize=", 8) == 0) {
        return seize(argv[1] + 8);
    }
    memset(&startup, 0, sizeof startup);
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = GetStdHandle(STD_INPUT_HANDLE);
    startup.hStdOutput = GetStdHandle(STD_OUTPUT_HANDLE);
    startup.hStdError = GetStdHandle(STD_ERROR_HANDLE);
    for (; at < argc && wcsncmp(argv[at], L"--", 2) == 0; ++at) {
        const wchar_t *value = wcschr(argv[at], L'=');
        if (changeStartup(&startup, argv[at])) {
            continue;
        }
        if (wcsncmp(argv[at], L"--temp=", 7) == 0) {
            setTemporaryFolder(value + 1);
        } else if (wcsncmp(argv[at], L"--profile=", 10) == 0) {
            setProfile(value + 1);
        } else if (wcsncmp(argv[at], L"--show=", 7) == 0) {
            startup.dwFlags |= STARTF_USESHOWWINDOW;
            startup.wShowWindow = (WORD)wcstoul(value + 1, NULL, 0);
        } else if (wcscmp(argv[at], L"--job") == 0) {
            joinJob();
        } else if (wcscmp(argv[at], L"--console") == 0) {
            openConsole(&startup);
        } else if (wcscmp(argv[at], L"--interrupt") == 0) {
            interrupts = TRUE;
        } else if (wcscmp(argv[at], L"--console-later") == 0) {
            flags = CREATE_SUSPENDED;
        } else if (wcscmp(argv[at], L"--detached") == 0) {
            flags = DETACHED_PROCESS;
        }
    }
    if (at >= argc) {
        return 98;
    }
    if (flags == CREATE_SUSPENDED) {
        startup.dwFlags &= ~(DWORD)STARTF_USESTDHANDLES;
        FreeConsole();
    }
    wcscpy(line, L"\"");
    wcscat(line, argv[at]);
    wcscat(line, L"\"");
    wcscat(line, tailOf(at + 1 < argc ? argv[at + 1] : NULL));
    if (!CreateProcessW(argv[at], line, NULL, NULL, TRUE, flags, NULL, NULL, &startup, &process)) {
        printf("failed=%lu\n", GetLastError());
        return 99;
    }
    if (flags == CREATE_SUSPENDED) {
        openConsole(&startup);
        ResumeThread(process.hThread);
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
