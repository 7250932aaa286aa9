// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/start/startplan.h"
#include "helpers/self-extractor/windows/failure.h"
#include "helpers/self-extractor/windows/job.h"

namespace sfx {

// The application's main program. Call one of the functions that start it, then wait().
class Program
{
public:
    // Starts the program of `plan` in `folder` with the arguments, handles and console of this
    // process, whose file is `executable`. Returns false on failure; then another way may be tried,
    // see start/nextstart.h.
    [[nodiscard]] bool start(const Text &folder, const Text &executable, const StartPlan &plan,
                             Failure &failure);
    // Starts the same program through the shell, after start() has failed. `first`: its arguments
    // before those of this process. `owner`: see ShellStart.
    [[nodiscard]] bool startThroughShell(const Text &first, HWND owner, Failure &failure);
    // Starts this process' own file again, with the rights of an administrator if the user agrees.
    // It gets the arguments of this process only, since it adds the plan's itself.
    [[nodiscard]] bool startElevated(const Text &executable, HWND owner, Failure &failure);

    // Waits until the program and all others in `folder` have ended, and returns the program's exit
    // code; 0 if the shell has not said which process it started.
    unsigned long wait(const Text &folder);

private:
    bool prepare(const Text &folder, const Text &executable, const StartPlan &plan);
    bool chooseWorkingFolder(const Text &folder, const Text &executable, WorkingFolder choice);
    bool create(DWORD flags, LPPROC_THREAD_ATTRIBUTE_LIST attributes, Handle &thread);
    bool createPatiently(DWORD flags, LPPROC_THREAD_ATTRIBUTE_LIST attributes, Handle &thread);
    bool createInJob();

    Text m_path;        // full path
    Text m_application; // the same, as CreateProcessW needs it
    Text m_commandLine;
    Text m_workingFolder; // empty: that of this process, which is the caller's
    Job m_job;
    Handle m_process;
};

} // namespace sfx
