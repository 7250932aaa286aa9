// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/windows-kit/inconsole.h"

#include "tests/windows-kit/files.h"
#include "tests/windows-kit/process.h"
#include "tests/windows-kit/product.h"
#include "tests/windows-kit/text.h"

#include <cstdlib>

namespace kit {

namespace {

HANDLE openScreen()
{
    SECURITY_ATTRIBUTES inheritable = {sizeof inheritable, nullptr, TRUE};
    return CreateFileW(L"CONOUT$", GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                       &inheritable, OPEN_EXISTING, 0, nullptr);
}

// The lines down to the cursor's.
std::string readScreen(HANDLE screen)
{
    CONSOLE_SCREEN_BUFFER_INFO info = {};
    GetConsoleScreenBufferInfo(screen, &info);
    std::wstring text;
    for (SHORT row = 0; row <= info.dwCursorPosition.Y; ++row) {
        std::wstring line(static_cast<std::size_t>(info.dwSize.X), L' ');
        DWORD got = 0;
        ReadConsoleOutputCharacterW(screen, line.data(), static_cast<DWORD>(line.size()), {0, row},
                                    &got);
        line.resize(got);
        line.erase(line.find_last_not_of(L' ') + 1);
        text += line + L'\n';
    }
    return utf8(text);
}

DWORD modeOf(HANDLE screen)
{
    DWORD mode = 0;
    GetConsoleMode(screen, &mode);
    return mode;
}

// The program's standard handles are the console's, as in a program that is started at a prompt.
std::string runAndLook(const std::wstring &program, const std::wstring &arguments)
{
    const HANDLE screen = openScreen();
    Start start(program, arguments);
    start.flags = 0;
    const DWORD before = modeOf(screen);
    Process process;
    if (screen == INVALID_HANDLE_VALUE || !process.start(start) || !process.wait()) {
        return "error=no console, or the program did not end\n";
    }
    return "before=" + std::to_string(before) + "\nafter=" + std::to_string(modeOf(screen))
        + "\ncode=" + std::to_string(process.exitCode()) + "\n\n" + readScreen(screen);
}

// A second process that does `command` and leaves what it found in a file.
std::string askSecond(const Place &place, const std::wstring &command, DWORD flags,
                      const std::wstring &program, const std::wstring &arguments)
{
    const std::wstring result = place.path(L"second.txt");
    Start start(ownProgram(), command + L" \"" + result + L"\" \"" + program + L"\" " + arguments);
    start.flags = flags;
    Process process;
    return process.start(start) && process.wait() ? readFile(result)
                                                  : "the second process did not end";
}

} // namespace

InConsole runInConsole(const Place &place, const std::wstring &program,
                       const std::wstring &arguments)
{
    const std::string text
        = askSecond(place, L"--in-console", CREATE_NO_WINDOW, program, arguments);
    const Notes notes(place.path(L"second.txt"));
    InConsole seen;
    const auto value = [&notes](const char *key) {
        return static_cast<std::uint32_t>(std::strtoul(notes[key].c_str(), nullptr, 10));
    };
    seen.error = notes["error"];
    seen.exitCode = value("code");
    seen.modeBefore = value("before");
    seen.modeAfter = value("after");
    const std::size_t screen = text.find("\n\n");
    if (screen != std::string::npos) {
        seen.screen = text.substr(screen + 2);
    } else if (seen.error.empty()) {
        seen.error = "the second process left nothing";
    }
    return seen;
}

std::string startAsTaskbar(const Place &place, const std::wstring &program,
                           const std::wstring &arguments)
{
    return askSecond(place, L"--taskbar", DETACHED_PROCESS, program, arguments);
}

std::string interruptInConsole(const Place &place, const std::wstring &program,
                               const std::wstring &arguments)
{
    return askSecond(place, L"--interrupt", CREATE_NO_WINDOW, program, arguments);
}

bool closeConsoleOf(unsigned long id, const Place &place)
{
    Start start(ownProgram(),
                L"--close-console " + std::to_wstring(id) + L" \"" + place.path(L"closed.txt")
                    + L'"');
    start.flags = DETACHED_PROCESS;
    Process process;
    return process.start(start) && process.wait() && readFile(place.path(L"closed.txt")) == "yes";
}

namespace {

// Everything in the command line after its first four words, as it stands.
std::wstring tailAfterFour(const wchar_t *line)
{
    bool isQuoted = false;
    int words = 0;
    bool isInWord = false;
    const wchar_t *at = line;
    for (; *at != 0 && (words < 4 || isInWord); ++at) {
        isQuoted = isQuoted != (*at == L'"');
        const bool isBlank = *at == L' ' && !isQuoted;
        words += !isBlank && !isInWord ? 1 : 0;
        isInWord = !isBlank;
    }
    return at;
}

// The window of the console gets the message of its cross. This process has joined the console, so
// it is ended, too; it leaves its note before.
int closeConsole(wchar_t **arguments)
{
    const DWORD id = std::wcstoul(arguments[2], nullptr, 10);
    const bool attached = AttachConsole(id);
    const HWND window = attached ? GetConsoleWindow() : nullptr;
    const bool closed = window != nullptr && writeFile(arguments[3], "yes")
        && PostMessageW(window, WM_CLOSE, 0, 0);
    if (!closed) {
        writeFile(arguments[3], "no");
    }
    FreeConsole();
    return 0;
}

std::string asTaskbar(const std::wstring &program, const std::wstring &arguments)
{
    constexpr DWORD hasShellData = 0x400; // STARTF_HASSHELLDATA
    std::wstring shortcut = L"C:\\Users\\Public\\product.lnk";
    Start start(program, arguments);
    start.flags = 0;
    start.info.dwFlags = hasShellData | STARTF_USESHOWWINDOW;
    start.info.wShowWindow = SW_SHOWMINNOACTIVE;
    start.info.hStdOutput = MonitorFromPoint({0, 0}, MONITOR_DEFAULTTOPRIMARY);
    start.info.lpTitle = shortcut.data();
    Process process;
    if (!process.start(start)) {
        return "no start: " + systemText(process.error());
    }
    return process.wait() ? std::to_string(process.exitCode()) : "a hang";
}

// A handler, because programs inherit the other way to ignore Ctrl+C.
BOOL WINAPI ignoreInterrupt(DWORD event)
{
    return event == CTRL_C_EVENT;
}

std::string interrupt(const std::wstring &program, const std::wstring &arguments)
{
    const std::wstring notes = variable(L"KIT_NOTE");
    SetConsoleCtrlHandler(ignoreInterrupt, TRUE);
    Start start(program, arguments);
    start.flags = 0;
    Process process;
    if (!process.start(start)) {
        return "no start: " + systemText(process.error());
    }
    waitUntil([&] { return exists(notes) || !process.isRunning(); });
    if (!GenerateConsoleCtrlEvent(CTRL_C_EVENT, 0)) {
        return "no event: " + systemText(GetLastError());
    }
    return process.wait() ? std::to_string(process.exitCode()) : "a hang";
}

int call(const std::wstring &program, const std::wstring &arguments)
{
    Start start(program, arguments);
    start.flags = 0;
    Process process;
    return process.start(start) && process.wait() ? static_cast<int>(process.exitCode()) : 1;
}

} // namespace

// The words after the command: FILE PROGRAM ARGUMENTS, for --call "-" instead of a file; for
// --close-console ID FILE.
bool serveConsole(int count, wchar_t **arguments, int &exitCode)
{
    const std::wstring command = count >= 4 ? arguments[1] : L"";
    const std::wstring tail = tailAfterFour(GetCommandLineW());
    exitCode = 0;
    if (command == L"--in-console") {
        writeFile(arguments[2], runAndLook(arguments[3], tail));
    } else if (command == L"--taskbar") {
        writeFile(arguments[2], asTaskbar(arguments[3], tail));
    } else if (command == L"--interrupt") {
        writeFile(arguments[2], interrupt(arguments[3], tail));
    } else if (command == L"--close-console") {
        exitCode = closeConsole(arguments);
    } else if (command == L"--call") {
        exitCode = call(arguments[3], tail);
    } else {
        return false;
    }
    return true;
}

} // namespace kit
