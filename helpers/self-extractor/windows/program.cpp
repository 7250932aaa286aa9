// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/program.h"

#include "helpers/self-extractor/start/commandline.h"
#include "helpers/self-extractor/start/heldfile.h"
#include "helpers/self-extractor/start/nextstart.h"
#include "helpers/self-extractor/start/winpath.h"
#include "helpers/self-extractor/windows/console.h"
#include "helpers/self-extractor/windows/detachonclose.h"
#include "helpers/self-extractor/windows/environment.h"
#include "helpers/self-extractor/windows/shellstart.h"
#include "helpers/self-extractor/windows/startupinfo.h"
#include "helpers/self-extractor/windows/workingfolder.h"

namespace sfx {

namespace {

// How long this process stays in the caller's console after the start, in milliseconds. A GUI
// program that prints something joins the console of the process that started it, which is this one.
constexpr DWORD timeToJoinConsole = 20000;

const char16_t *ownCommandLine()
{
    return reinterpret_cast<const char16_t *>(GetCommandLineW());
}

bool failStart(Failure &failure, DWORD systemError, const Text &path)
{
    failure.code = exitCodeOfStart(systemError);
    failure.systemError = systemError;
    if (!failure.subject.assign(path.data(), path.size())) {
        failure.subject = Text();
    }
    return false;
}

} // namespace

bool Program::chooseWorkingFolder(const Text &folder, const Text &executable, WorkingFolder choice)
{
    Text own;
    Text plain;
    switch (choice) {
    case WorkingFolder::Caller:
        return true;
    case WorkingFolder::Executable:
        return folderOf(executable, own) && toPlainPath(own, plain)
            && workingFolder(plain, m_workingFolder);
    case WorkingFolder::Application:
        break;
    }
    return workingFolder(folder, m_workingFolder);
}

bool Program::prepare(const Text &folder, const Text &executable, const StartPlan &plan)
{
    const Text &program = plan.program();
    if (!m_path.append(folder) || !m_path.append(u"\\")
        || !appendArchivePath(m_path, program.data(), program.size())) {
        return false;
    }
    Text name;
    // The plain path if it is short enough, because the program is told it.
    const bool prepared = m_path.size() < MAX_PATH ? m_application.append(m_path)
                                                   : toExtendedPath(m_path, m_application);
    return prepared && chooseWorkingFolder(folder, executable, plan.settings.workingFolder)
        && name.append(fileNameOf(m_path))
        && inheritCommandLine(m_path, name, plan.settings.arguments, ownCommandLine(),
                              m_commandLine);
}

bool Program::create(DWORD flags, LPPROC_THREAD_ATTRIBUTE_LIST attributes, Handle &thread)
{
    STARTUPINFOEXW startup = startupInfoForProgram();
    startup.lpAttributeList = attributes;
    PROCESS_INFORMATION started = {};
    const wchar_t *folder = m_workingFolder.isEmpty() ? nullptr : wide(m_workingFolder.data());
    if (!CreateProcessW(wide(m_application.data()),
                        wide(const_cast<char16_t *>(m_commandLine.data())), nullptr, nullptr, TRUE,
                        flags | EXTENDED_STARTUPINFO_PRESENT, nullptr, folder, &startup.StartupInfo,
                        &started)) {
        return false;
    }
    m_process.reset(started.hProcess);
    thread.reset(started.hThread);
    return true;
}

// A virus scanner may hold the program's file, which is new.
bool Program::createPatiently(DWORD flags, LPPROC_THREAD_ATTRIBUTE_LIST attributes, Handle &thread)
{
    for (const unsigned pause : holderPauses) {
        if (create(flags, attributes, thread)) {
            return true;
        }
        if (!isHeldByAnother(GetLastError())) {
            return false;
        }
        Sleep(pause);
    }
    return create(flags, attributes, thread);
}

// The process starts inside the job. If Windows does not support that, it is put into the job
// before its first instruction. If it cannot be in the job at all, it runs without one.
bool Program::createInJob()
{
    Handle thread;
    JobAttribute attribute;
    const DWORD flag = consoleFlag();
    const bool hasJob = m_job.create();
    if (hasJob && attribute.create(m_job)) {
        if (createPatiently(flag, attribute.list(), thread)) {
            return true;
        }
        const DWORD error = GetLastError();
        if (isHeldByAnother(error) || nextStart(error, false) != NextStart::None) {
            return false; // not because of the job
        }
    }
    if (!createPatiently(flag | CREATE_SUSPENDED, nullptr, thread)) {
        return false;
    }
    if (hasJob) {
        m_job.add(m_process.get());
    }
    ResumeThread(thread.get());
    return true;
}

bool Program::start(const Text &folder, const Text &executable, const StartPlan &plan,
                    Failure &failure)
{
    if (!prepare(folder, executable, plan)) {
        failure.code = ExitCode::NoMemory;
        return false;
    }
    if (m_commandLine.isEmpty()) {
        return failStart(failure, ERROR_FILENAME_EXCED_RANGE, m_path); // as Windows says it
    }
    return createInJob() || failStart(failure, GetLastError(), m_path);
}

bool Program::startThroughShell(const Text &first, HWND owner, Failure &failure)
{
    Text arguments;
    if (!joinArguments(first, ownCommandLine(), arguments)) {
        failure.code = ExitCode::NoMemory;
        return false;
    }
    const ShellStart request{m_path, arguments.data(), m_workingFolder, nullptr, owner};
    return sfx::startThroughShell(request, m_process) || failStart(failure, GetLastError(), m_path);
}

bool Program::startElevated(const Text &executable, HWND owner, Failure &failure)
{
    // Elevated processes would begin in the system folder otherwise.
    Text callers;
    Text working;
    if (!callersFolder(callers) || !workingFolder(callers, working)) {
        working = Text();
    }
    const ShellStart request{executable, argumentTail(ownCommandLine()), working, L"runas", owner};
    return sfx::startThroughShell(request, m_process)
        || failStart(failure, GetLastError(), executable);
}

unsigned long Program::wait(const Text &folder)
{
    unsigned long exitCode = 0;
    if (!m_process) {
        return exitCode;
    }
    const DetachJobOnClose whileInConsole(m_job);
    if (!isConsoleProgram()) {
        WaitForSingleObject(m_process.get(), timeToJoinConsole);
        // Windows would end this process together with the console, before it has cleaned up.
        FreeConsole();
    }
    WaitForSingleObject(m_process.get(), INFINITE);
    if (!GetExitCodeProcess(m_process.get(), &exitCode)) {
        exitCode = 0;
    }
    m_job.waitForProgramsIn(folder);
    return exitCode;
}

} // namespace sfx
