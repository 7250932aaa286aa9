// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <string>

#include <windows.h>

// Programs that a row starts.
namespace kit {

// The time in milliseconds after which a program counts as hung. Machines stall for more than a
// minute at times, so nothing else depends on this limit.
constexpr DWORD patience = 300000;

// How a program is started. The standard handles are those in `info`, if it says so.
struct Start
{
    explicit Start(std::wstring file, std::wstring tail = {});

    std::wstring program;   // full path
    std::wstring arguments; // as they stand, after the program and a blank
    std::wstring folder;    // the working folder; this process' if empty
    DWORD flags = CREATE_NO_WINDOW;
    DWORD limit = patience; // for run(), in milliseconds
    HANDLE token = nullptr; // the rights; this process' if null
    STARTUPINFOW info = {};
};

// A running program. If it still runs at the end, it is killed.
class Process
{
public:
    Process() = default;
    Process(const Process &) = delete;
    Process &operator=(const Process &) = delete;
    ~Process();

    bool start(const Start &start); // returns false and keeps the error in error()
    bool open(DWORD id);            // a process that another program has started
    bool isRunning() const;
    bool wait(DWORD milliseconds = patience) const;
    void kill();
    std::uint32_t exitCode() const;
    DWORD id() const { return m_id; }
    HANDLE handle() const { return m_process; }
    DWORD error() const { return m_error; }

private:
    void close();

    HANDLE m_process = nullptr;
    DWORD m_id = 0;
    DWORD m_error = 0;
    bool m_isOurs = false;
};

// How a program ended.
struct Ended
{
    bool isByItself = false; // false if it did not start, or was killed after its limit
    std::uint32_t exitCode = 0;
    std::string output;
    std::string errors;
    std::uint64_t milliseconds = 0;

    // All of it in one line, for the report.
    std::string text() const;
};

// Runs a program to its end. Its output and errors go to files in `scratch`, its input is empty or
// comes from `input`, a file.
Ended run(Start start, const std::wstring &scratch, const std::wstring &input = {});

// Repeats `condition` until it is true, at most `patience` milliseconds; returns false after that.
template <typename Condition>
bool waitUntil(Condition condition)
{
    const ULONGLONG end = GetTickCount64() + patience;
    while (!condition()) {
        if (GetTickCount64() > end) {
            return false;
        }
        Sleep(20);
    }
    return true;
}

} // namespace kit
