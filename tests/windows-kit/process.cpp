// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/windows-kit/process.h"

#include "tests/windows-kit/files.h"
#include "tests/windows-kit/text.h"

#include <utility>

namespace kit {

namespace {

HANDLE openInheritable(const std::wstring &path, DWORD access, DWORD disposition)
{
    SECURITY_ATTRIBUTES inheritable = {sizeof inheritable, nullptr, TRUE};
    return CreateFileW(path.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE, &inheritable,
                       disposition, 0, nullptr);
}

} // namespace

Start::Start(std::wstring file, std::wstring tail)
    : program(std::move(file))
    , arguments(std::move(tail))
{
    info.cb = sizeof info;
}

Process::~Process()
{
    close();
}

void Process::close()
{
    if (m_process != nullptr) {
        if (m_isOurs && isRunning()) {
            kill();
        }
        CloseHandle(m_process);
        m_process = nullptr;
    }
}

bool Process::start(const Start &start)
{
    close();
    std::wstring line = L"\"" + start.program + L"\"";
    if (!start.arguments.empty()) {
        line += L" " + start.arguments;
    }
    STARTUPINFOW info = start.info;
    PROCESS_INFORMATION started = {};
    const wchar_t *folder = start.folder.empty() ? nullptr : start.folder.c_str();
    const BOOL done = start.token == nullptr
        ? CreateProcessW(start.program.c_str(), line.data(), nullptr, nullptr, TRUE, start.flags,
                         nullptr, folder, &info, &started)
        : CreateProcessAsUserW(start.token, start.program.c_str(), line.data(), nullptr, nullptr,
                               TRUE, start.flags, nullptr, folder, &info, &started);
    if (!done) {
        m_error = GetLastError();
        return false;
    }
    CloseHandle(started.hThread);
    m_process = started.hProcess;
    m_id = started.dwProcessId;
    m_isOurs = true;
    return true;
}

bool Process::open(DWORD id)
{
    close();
    m_process = OpenProcess(SYNCHRONIZE | PROCESS_QUERY_LIMITED_INFORMATION, FALSE, id);
    m_error = GetLastError();
    m_id = id;
    m_isOurs = false;
    return m_process != nullptr;
}

bool Process::isRunning() const
{
    return m_process != nullptr && WaitForSingleObject(m_process, 0) == WAIT_TIMEOUT;
}

bool Process::wait(DWORD milliseconds) const
{
    return m_process != nullptr && WaitForSingleObject(m_process, milliseconds) == WAIT_OBJECT_0;
}

void Process::kill()
{
    TerminateProcess(m_process, 1);
    wait();
}

std::uint32_t Process::exitCode() const
{
    DWORD code = 0;
    GetExitCodeProcess(m_process, &code);
    return code;
}

std::string Ended::text() const
{
    if (!isByItself) {
        return "did not end by itself; " + oneLine(errors);
    }
    return "exit code " + hex(exitCode) + (output.empty() ? "" : ", output: " + oneLine(output))
        + (errors.empty() ? "" : ", errors: " + oneLine(errors));
}

Ended run(Start start, const std::wstring &scratch, const std::wstring &input)
{
    const std::wstring output = scratch + L"\\output.txt";
    const std::wstring errors = scratch + L"\\errors.txt";
    STARTUPINFOW &info = start.info;
    info.dwFlags |= STARTF_USESTDHANDLES;
    info.hStdInput = openInheritable(input.empty() ? L"NUL" : input, GENERIC_READ, OPEN_EXISTING);
    info.hStdOutput = openInheritable(output, GENERIC_WRITE, CREATE_ALWAYS);
    info.hStdError = openInheritable(errors, GENERIC_WRITE, CREATE_ALWAYS);
    const ULONGLONG begin = GetTickCount64();
    Ended ended;
    Process process;
    const bool started = process.start(start);
    for (const HANDLE handle : {info.hStdInput, info.hStdOutput, info.hStdError}) {
        CloseHandle(handle);
    }
    if (!started) {
        ended.errors = "cannot be started: " + systemText(process.error());
        return ended;
    }
    ended.isByItself = process.wait(start.limit);
    if (!ended.isByItself) {
        process.kill();
    }
    ended.milliseconds = GetTickCount64() - begin;
    ended.exitCode = process.exitCode();
    ended.output = readFile(output);
    ended.errors = readFile(errors);
    return ended;
}

} // namespace kit
