// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/program.h"

#include "helpers/self-extractor/start/commandline.h"
#include "helpers/self-extractor/start/winpath.h"
#include "helpers/self-extractor/windows/detachonclose.h"
#include "helpers/self-extractor/windows/job.h"
#include "helpers/self-extractor/windows/systemlibrary.h"

#include <shellapi.h>

namespace sfx {

namespace {

// winerror.h: the program's manifest asks for more rights. MinGW's headers do not define it.
constexpr DWORD elevationRequired = 740;

// Everything that is needed to start the program.
struct Launch
{
    Text program;     // full path
    Text application; // the same, as CreateProcessW needs it
    Text commandLine;
    const Text *folder = nullptr;
};

const char16_t *ownCommandLine()
{
    return reinterpret_cast<const char16_t *>(GetCommandLineW());
}

[[nodiscard]] bool prepare(Launch &launch, const Text &folder, const Text &name)
{
    launch.folder = &folder;
    Text &program = launch.program;
    if (!program.append(folder) || !program.append(u"\\") || !program.append(name)) {
        return false;
    }
    // The plain path if it is short enough, because the program is told it.
    const bool prepared = program.size() < MAX_PATH ? launch.application.append(program)
                                                    : toExtendedPath(program, launch.application);
    return prepared && inheritCommandLine(program, name, ownCommandLine(), launch.commandLine);
}

// Makes a standard handle inheritable. Returns false if there is none.
bool makeInheritable(DWORD which, HANDLE &handle)
{
    const HANDLE own = GetStdHandle(which);
    if (own == nullptr || own == INVALID_HANDLE_VALUE) {
        return false;
    }
    SetHandleInformation(own, HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT);
    handle = own;
    return true;
}

STARTUPINFOEXW startupInfo()
{
    STARTUPINFOW own = {};
    own.cb = sizeof own;
    GetStartupInfoW(&own);
    STARTUPINFOEXW extended = {};
    STARTUPINFOW &startup = extended.StartupInfo;
    startup.cb = sizeof extended;
    startup.dwFlags = own.dwFlags & STARTF_USESHOWWINDOW;
    startup.wShowWindow = own.wShowWindow;
    const bool input = makeInheritable(STD_INPUT_HANDLE, startup.hStdInput);
    const bool output = makeInheritable(STD_OUTPUT_HANDLE, startup.hStdOutput);
    const bool error = makeInheritable(STD_ERROR_HANDLE, startup.hStdError);
    if (input || output || error) {
        startup.dwFlags |= STARTF_USESTDHANDLES;
    }
    return extended;
}

bool create(Launch &launch, DWORD flags, LPPROC_THREAD_ATTRIBUTE_LIST attributes, Handle &process,
            Handle &thread)
{
    STARTUPINFOEXW startup = startupInfo();
    startup.lpAttributeList = attributes;
    PROCESS_INFORMATION started = {};
    if (!CreateProcessW(wide(launch.application.data()),
                        wide(const_cast<char16_t *>(launch.commandLine.data())), nullptr, nullptr,
                        TRUE, flags | EXTENDED_STARTUPINFO_PRESENT, nullptr,
                        wide(launch.folder->data()), &startup.StartupInfo, &started)) {
        return false;
    }
    process.reset(started.hProcess);
    thread.reset(started.hThread);
    return true;
}

// The process starts inside the job. If Windows does not support that, it is put into the job
// before its first instruction. If it cannot be in the job at all, it runs without one.
bool startDirectly(Launch &launch, Job &job, Handle &process)
{
    Handle thread;
    JobAttribute attribute;
    const bool hasJob = job.create();
    if (hasJob && attribute.create(job) && create(launch, 0, attribute.list(), process, thread)) {
        return true;
    }
    if (!create(launch, CREATE_SUSPENDED, nullptr, process, thread)) {
        return false;
    }
    if (hasJob) {
        job.add(process.get());
    }
    ResumeThread(thread.get());
    return true;
}

// The shell asks the user and lets a service start the program: it is not in our job and inherits
// neither handles nor environment.
bool startThroughShell(const Launch &launch, Handle &process)
{
    using ShellExecuteFunction = BOOL(WINAPI *)(SHELLEXECUTEINFOW *);
    const auto shellExecute
        = SystemLibrary(L"shell32.dll").function<ShellExecuteFunction>("ShellExecuteExW");
    SHELLEXECUTEINFOW info = {};
    info.cbSize = sizeof info;
    info.fMask = SEE_MASK_NOCLOSEPROCESS | SEE_MASK_NOASYNC | SEE_MASK_FLAG_NO_UI;
    info.lpVerb = L"runas";
    info.lpFile = wide(launch.program.data());
    info.lpParameters = wide(argumentTail(ownCommandLine()));
    info.lpDirectory = wide(launch.folder->data());
    const STARTUPINFOW startup = startupInfo().StartupInfo;
    info.nShow = (startup.dwFlags & STARTF_USESHOWWINDOW) != 0 ? startup.wShowWindow
                                                               : SW_SHOWNORMAL;
    if (shellExecute == nullptr || !shellExecute(&info)) {
        return false;
    }
    process.reset(info.hProcess);
    return static_cast<bool>(process);
}

} // namespace

bool runProgram(const Text &folder, const Text &name, unsigned long &exitCode, Failure &failure)
{
    Launch launch;
    if (!prepare(launch, folder, name)) {
        failure.code = ExitCode::NoMemory;
        return false;
    }
    Job job;
    Handle process;
    if (!startDirectly(launch, job, process)
        && (GetLastError() != elevationRequired || !startThroughShell(launch, process))) {
        failure.systemError = GetLastError();
        failure.code = failure.systemError == ERROR_CANCELLED ? ExitCode::Cancelled
                                                              : ExitCode::StartFailed;
        failure.subject = std::move(launch.program);
        return false;
    }
    const DetachJobOnClose whileItRuns(job);
    WaitForSingleObject(process.get(), INFINITE);
    GetExitCodeProcess(process.get(), &exitCode);
    job.waitUntilEmpty();
    return true;
}

} // namespace sfx
