// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

// The application in the products that the rows start. It writes what it sees to the file that the
// environment variable KIT_NOTE names: lines KEY=VALUE, in UTF-8 (see notes.h). Its commands may
// stand anywhere in its command line; a TEXT ends at the next blank:
//
//     --print=TEXT  a line on standard output
//     --error=TEXT  a line on standard error
//     --echo        copies standard input to standard output
//     --wait        waits for the event that KIT_EVENT names before it ends
//     --breakaway   starts itself outside the job with --wait, and ends without waiting; the second
//                   process' notes are in the file KIT_NOTE with ".child" at the end
//     --exit=N      the exit code; without it the code is 7

#include <cstdio>
#include <cwchar>
#include <string>

#include <windows.h>

namespace {

constexpr DWORD longestWait = 600000; // if the row has gone away

std::string utf8(const std::wstring &text)
{
    std::string bytes(3 * text.size() + 1, '\0');
    const int size = WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()),
                                         bytes.data(), static_cast<int>(bytes.size()), nullptr,
                                         nullptr);
    bytes.resize(static_cast<std::size_t>(size));
    return bytes;
}

std::wstring variable(const wchar_t *name)
{
    std::wstring value(32768, L'\0');
    value.resize(GetEnvironmentVariableW(name, value.data(), static_cast<DWORD>(value.size())));
    return value;
}

std::wstring ownPath()
{
    std::wstring path(32768, L'\0');
    path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
    return path;
}

std::wstring currentFolder()
{
    std::wstring path(32768, L'\0');
    path.resize(GetCurrentDirectoryW(static_cast<DWORD>(path.size()), path.data()));
    return path;
}

bool has(const wchar_t *command)
{
    return std::wcsstr(GetCommandLineW(), command) != nullptr;
}

std::wstring textAfter(const wchar_t *command)
{
    const wchar_t *found = std::wcsstr(GetCommandLineW(), command);
    if (found == nullptr) {
        return {};
    }
    const std::wstring text = found + std::wcslen(command);
    return text.substr(0, text.find_first_of(L" \""));
}

std::string kindOf(DWORD which)
{
    const HANDLE handle = GetStdHandle(which);
    DWORD mode = 0;
    if (handle == nullptr || handle == INVALID_HANDLE_VALUE) {
        return "none";
    }
    if (GetConsoleMode(handle, &mode)) {
        return "console";
    }
    switch (GetFileType(handle)) {
    case FILE_TYPE_DISK:
        return "file";
    case FILE_TYPE_PIPE:
        return "pipe";
    case FILE_TYPE_CHAR:
        return "device";
    default:
        return "invalid";
    }
}

bool writeLine(DWORD which, const std::string &text)
{
    const std::string line = text + "\r\n";
    DWORD written = 0;
    return WriteFile(GetStdHandle(which), line.data(), static_cast<DWORD>(line.size()), &written,
                     nullptr)
        && written == line.size();
}

void echo()
{
    char buffer[4096];
    DWORD got = 0;
    DWORD written = 0;
    while (ReadFile(GetStdHandle(STD_INPUT_HANDLE), buffer, sizeof buffer, &got, nullptr)
           && got != 0) {
        WriteFile(GetStdHandle(STD_OUTPUT_HANDLE), buffer, got, &written, nullptr);
    }
}

// The file lies beside the program; the working folder is elsewhere in some products.
std::string firstLineOfData()
{
    char text[100] = "";
    const std::wstring program = ownPath();
    const std::wstring path = program.substr(0, program.rfind(L'\\') + 1) + L"data.txt";
    if (FILE *const file = _wfopen(path.c_str(), L"r")) {
        if (std::fgets(text, sizeof text, file) == nullptr) {
            text[0] = 0;
        }
        std::fclose(file);
    }
    std::string line = text;
    return line.substr(0, line.find_first_of("\r\n"));
}

std::string notes()
{
    STARTUPINFOW info = {};
    GetStartupInfoW(&info);
    char numbers[100];
    std::snprintf(numbers, sizeof numbers, "id=%lu\nflags=0x%lX\nattributes=0x%lX\n",
                  GetCurrentProcessId(), info.dwFlags, GetFileAttributesW(ownPath().c_str()));
    std::string text = numbers;
    text += "program=" + utf8(ownPath()) + "\nfolder=" + utf8(currentFolder()) + '\n';
    text += "dir=" + utf8(variable(L"KESTRELPACK_DIR")) + '\n';
    text += "exe=" + utf8(variable(L"KESTRELPACK_EXE")) + '\n';
    text += "line=" + utf8(GetCommandLineW()) + "\ndata=" + firstLineOfData() + '\n';
    text += "input=" + kindOf(STD_INPUT_HANDLE) + "\noutput=" + kindOf(STD_OUTPUT_HANDLE) + '\n';
    text += "errors=" + kindOf(STD_ERROR_HANDLE) + '\n';
    return text;
}

// The file appears with its whole content.
void leaveNotes(const std::string &text)
{
    const std::wstring path = variable(L"KIT_NOTE");
    const std::wstring part = path + L".part";
    FILE *const file = path.empty() ? nullptr : _wfopen(part.c_str(), L"wb");
    if (file == nullptr) {
        return;
    }
    std::fputs(text.c_str(), file);
    std::fclose(file);
    MoveFileExW(part.c_str(), path.c_str(), MOVEFILE_REPLACE_EXISTING);
}

bool startSecond()
{
    SetEnvironmentVariableW(L"KIT_NOTE", (variable(L"KIT_NOTE") + L".child").c_str());
    const std::wstring program = ownPath();
    std::wstring line = L"\"" + program + L"\" --wait";
    STARTUPINFOW info = {};
    info.cb = sizeof info;
    PROCESS_INFORMATION started = {};
    return CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, FALSE,
                          CREATE_BREAKAWAY_FROM_JOB, nullptr, nullptr, &info, &started);
}

void waitForEvent()
{
    const HANDLE event = OpenEventW(SYNCHRONIZE, FALSE, variable(L"KIT_EVENT").c_str());
    if (event != nullptr) {
        WaitForSingleObject(event, longestWait);
    }
}

} // namespace

int wmain()
{
    std::string text = notes();
    if (has(L"--print=")) {
        const bool written = writeLine(STD_OUTPUT_HANDLE, utf8(textAfter(L"--print=")));
        text += written ? "written=1\n" : "written=0\n";
    }
    if (has(L"--error=")) {
        writeLine(STD_ERROR_HANDLE, utf8(textAfter(L"--error=")));
    }
    if (has(L"--echo")) {
        echo();
    }
    leaveNotes(text);
    if (has(L"--breakaway") && !startSecond()) {
        return 98;
    }
    if (has(L"--wait")) {
        waitForEvent();
    }
    const std::wstring code = textAfter(L"--exit=");
    ExitProcess(code.empty() ? 7 : static_cast<UINT>(std::wcstoul(code.c_str(), nullptr, 0)));
}
