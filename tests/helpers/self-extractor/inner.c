// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

// The application that the tests pack. It prints how it was started, in UTF-8, and ends as it is
// told. Its commands may stand anywhere in its command line:
//
//     --exit=N    the exit code; without it the code is 7
//     --wait      waits for a line on standard input before it ends
//     --echo      copies a line from standard input to standard error
//     --launch=N  starts itself and does not wait for that process; the last of N generations reads
//                 data.txt from its folder a second later
//     --stay      stays for 20 seconds before it ends
//     --start-one starts itself with --stay
//     --escape-and-stay
//                 starts itself outside the job it is in, with --stay, and stays
//     --escape-and-end
//                 starts itself outside the job it is in, with --until-told, and ends
//     --until-told
//                 stays until its folder contains stop.txt
//     --escape    starts itself outside the job it is in, and prints whether that succeeded
//     --ctrl-c    sends Ctrl+C to its console, and prints whether it received it
//     --join      leaves its console and joins that of the process that started it, and prints
//                 whether that succeeded
//     --join-late the same, 25 seconds later
//     --join-not  joins the console of the process that started it again and again, and ends when
//                 that process has left its console
//     --by-number writes to file descriptor 3
//     --open=P    starts the program P, which has no blank in its path, elsewhere and for ten minutes
//     --remain    stays for ten minutes

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
    DWORD process;
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
    if (startup.dwFlags & STARTF_TITLEISLINKNAME) {
        tell("title", startup.lpTitle);
    }
    printf("console=%d\n", GetConsoleProcessList(&process, 1) != 0);
    fflush(stdout);
}

// Without `folder` the program inherits handles and working folder.
static BOOL startProgram(const wchar_t *program, const wchar_t *arguments, DWORD flags,
                         const wchar_t *folder)
{
    static wchar_t line[32768];
    STARTUPINFOW startup;
    PROCESS_INFORMATION process;
    memset(&startup, 0, sizeof startup);
    startup.cb = sizeof startup;
    wcscpy(line, L"\"");
    wcscat(line, program);
    wcscat(line, L"\"");
    wcscat(line, arguments);
    return CreateProcessW(program, line, NULL, NULL, folder == NULL, flags, NULL, folder, &startup,
                          &process);
}

static BOOL startSelf(const wchar_t *arguments, DWORD flags)
{
    wchar_t program[1024];
    GetModuleFileNameW(NULL, program, 1024);
    return startProgram(program, arguments, flags, NULL);
}

// The value of an option, up to the next blank. The value stays valid until the next call.
static const wchar_t *valueOf(const wchar_t *option)
{
    static wchar_t value[32768];
    const wchar_t *found = wcsstr(GetCommandLineW(), option);
    size_t size = 0;
    if (found == NULL) {
        return NULL;
    }
    for (found += wcslen(option); *found != 0 && *found != L' '; ++found) {
        value[size++] = *found;
    }
    value[size] = 0;
    return value;
}

static void openOther(void)
{
    const wchar_t *program = valueOf(L"--open=");
    if (program != NULL) {
        printf("opened=%d\n", startProgram(program, L" --remain", 0, L"C:\\"));
        fflush(stdout);
    }
}

static BOOL joinStartersConsole(void)
{
    FreeConsole();
    return AttachConsole(ATTACH_PARENT_PROCESS);
}

static void tellConsole(const wchar_t *line)
{
    if (wcsstr(line, L"--join-not") != NULL) {
        while (joinStartersConsole()) {
            Sleep(200);
        }
        printf("joined-not=1\n");
    } else if (wcsstr(line, L"--join") != NULL) {
        if (wcsstr(line, L"--join-late") != NULL) {
            Sleep(25000);
        }
        printf("joined=%d\n", joinStartersConsole());
    }
    fflush(stdout);
}

static void tellData(void)
{
    char text[100] = "";
    FILE *in = fopen("data.txt", "r");
    if (in != NULL) {
        fgets(text, sizeof text, in);
        fclose(in);
    }
    printf("data=%s\n", text);
    fflush(stdout);
}

static void launch(unsigned generations)
{
    wchar_t arguments[100];
    if (generations == 0) {
        Sleep(1000);
        tellData();
        return;
    }
    wsprintfW(arguments, L" --launch=%u --exit=9", generations - 1);
    startSelf(arguments, 0);
}

static LONG interrupted = 0;

static BOOL WINAPI onEvent(DWORD event)
{
    if (event == CTRL_C_EVENT) {
        InterlockedExchange(&interrupted, 1);
    }
    return TRUE;
}

static DWORD WINAPI sendInterrupt(LPVOID sent)
{
    Sleep(500);
    *(BOOL *)sent = GenerateConsoleCtrlEvent(CTRL_C_EVENT, 0);
    Sleep(700);
    return 0;
}

// Wine brings the event as a Unix signal to the oldest thread of each process in the console. The
// signal's handler creates a thread, which is safe only if the interrupted one does nothing. So
// another thread sends the event, when this process and those that started it wait.
static void interruptConsole(void)
{
    BOOL sent = FALSE;
    SetConsoleCtrlHandler(onEvent, TRUE);
    const HANDLE sender = CreateThread(NULL, 0, sendInterrupt, &sent, 0, NULL);
    WaitForSingleObject(sender, INFINITE);
    CloseHandle(sender);
    printf("sent=%d\ninterrupted=%ld\n", sent, interrupted);
    fflush(stdout);
}

// At most five minutes, if the test has failed.
static void stayUntilTold(void)
{
    for (int i = 0; i < 6000; ++i) {
        if (GetFileAttributesW(L"stop.txt") != INVALID_FILE_ATTRIBUTES) {
            return;
        }
        Sleep(50);
    }
}

int wmain(void)
{
    const wchar_t *line = GetCommandLineW();
    const wchar_t *code = wcsstr(line, L"--exit=");
    const wchar_t *generations = wcsstr(line, L"--launch=");
    tellStart();
    if (generations != NULL) {
        launch(wcstoul(generations + 9, NULL, 10));
    }
    if (wcsstr(line, L"--start-one") != NULL) {
        startSelf(L" --stay", 0);
    }
    if (wcsstr(line, L"--escape-and-stay") != NULL) {
        startSelf(L" --stay", CREATE_BREAKAWAY_FROM_JOB);
        Sleep(20000);
    } else if (wcsstr(line, L"--escape-and-end") != NULL) {
        startSelf(L" --until-told", CREATE_BREAKAWAY_FROM_JOB);
    } else if (wcsstr(line, L"--escape") != NULL) {
        printf("escaped=%d\n", startSelf(L" --exit=9", CREATE_BREAKAWAY_FROM_JOB));
        fflush(stdout);
    }
    openOther();
    tellConsole(line);
    if (wcsstr(line, L"--by-number") != NULL) {
        FILE *out = _fdopen(3, "w");
        if (out != NULL) {
            fputs("by number", out);
            fclose(out);
        }
    }
    if (wcsstr(line, L"--remain") != NULL) {
        Sleep(600000);
    }
    if (wcsstr(line, L"--ctrl-c") != NULL) {
        interruptConsole();
    }
    if (wcsstr(line, L"--echo") != NULL) {
        char text[100];
        if (fgets(text, sizeof text, stdin) != NULL) {
            fputs(text, stderr);
        }
    }
    if (wcsstr(line, L"--wait") != NULL) {
        getchar();
    }
    if (wcsstr(line, L"--until-told") != NULL) {
        stayUntilTold();
    }
    if (wcsstr(line, L"--stay") != NULL) {
        Sleep(20000);
    }
    ExitProcess(code != NULL ? (UINT)wcstoul(code + 7, NULL, 0) : 7);
}
