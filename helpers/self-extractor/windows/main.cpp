// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/archive/contents.h"
#include "helpers/self-extractor/start/nextstart.h"
#include "helpers/self-extractor/start/startplan.h"
#include "helpers/self-extractor/start/winpath.h"
#include "helpers/self-extractor/windows/console.h"
#include "helpers/self-extractor/windows/diskspace.h"
#include "helpers/self-extractor/windows/environment.h"
#include "helpers/self-extractor/windows/executable.h"
#include "helpers/self-extractor/windows/filesink.h"
#include "helpers/self-extractor/windows/interrupt.h"
#include "helpers/self-extractor/windows/keptfolder.h"
#include "helpers/self-extractor/windows/messages.h"
#include "helpers/self-extractor/windows/privatefolder.h"
#include "helpers/self-extractor/windows/program.h"
#include "helpers/self-extractor/windows/progresswindow.h"
#include "helpers/self-extractor/windows/shellstart.h"
#include "helpers/self-extractor/windows/stalefolders.h"
#include "helpers/self-extractor/windows/temporaryfolder.h"
#include "helpers/self-extractor/windows/unpackvisibly.h"

namespace sfx {

namespace {

// SetProcessShutdownParameters: programs have 0x280, and higher levels are ended first.
constexpr DWORD lastOfApplications = 0x100;

// Upper case as in the file system: without a locale, and without a change of length.
void upperCaseAsFileSystem(char16_t *text, std::size_t size)
{
    LCMapStringEx(LOCALE_NAME_INVARIANT, LCMAP_UPPERCASE, wide(text), static_cast<int>(size),
                  wide(text), static_cast<int>(size), nullptr, nullptr, 0);
}

bool failWith(Failure &failure, Status status, unsigned long systemError = 0)
{
    failure.code = exitCodeOf(status);
    failure.systemError = systemError;
    return false;
}

// Finds everything that can be wrong before a byte is written.
bool inspect(Executable &executable, StartPlan &plan, Archive &archive, std::uint64_t &totalBytes,
             Failure &failure)
{
    std::uint64_t archiveOffset = 0;
    Status status = readStartPlan(executable, plan, archiveOffset);
    if (status == Status::Ok) {
        status = archive.open(archiveOffset);
    }
    if (status == Status::Ok) {
        status = checkContents(archive, plan.program(), upperCaseAsFileSystem, totalBytes);
    }
    if (status == Status::ProgramMissing && !failure.subject.append(plan.program())) {
        failure.subject = Text();
    }
    return status == Status::Ok || failWith(failure, status);
}

// Empty if the file does not ask for a window.
Owned<ProgressWindow> progressWindow(const StartPlan &plan, std::uint64_t totalBytes)
{
    return plan.showsProgress(isConsoleProgram())
        ? makeOwned<ProgressWindow>(plan.title(), totalBytes)
        : Owned<ProgressWindow>();
}

// Where the application lies while it runs: in a kept folder or in a private one.
struct Place
{
    Owned<KeptFolder> kept;
    PrivateFolder folder;
    const Text *application = nullptr; // the application's folder
};

bool makeFolder(const StartPlan &plan, const Executable &executable, std::uint64_t totalBytes,
                PrivateFolder &folder, Failure &failure)
{
    Text temporary;
    if (findTemporaryFolder(temporary)
        && folder.create(temporary, plan.folderName(), plan.program(), executable.path())) {
        removeStaleFolders(temporary, folder.lock());
        return true;
    }
    failure.code = ExitCode::NoFolder;
    failure.systemError = GetLastError();
    if (isDiskFull(failure.systemError)) {
        failure.code = ExitCode::DiskFull;
        failure.missingBytes = missingSpace(temporary, totalBytes);
    }
    failure.subject = std::move(temporary);
    return false;
}

bool unpackInto(const PrivateFolder &folder, Archive &archive, std::uint64_t totalBytes,
                const Owned<ProgressWindow> &window, Failure &failure)
{
    const Owned<FileCloser> closer = makeFileCloser();
    FileSink sink(folder.application(), closer);
    const Status status = unpackVisibly(archive, sink, totalBytes, window);
    if (status == Status::Ok) {
        return true;
    }
    failure.missingBytes = sink.missingBytes();
    if ((status == Status::WriteFailed || status == Status::DiskFull)
        && !failure.subject.append(sink.failedPath())) {
        failure.subject = Text();
    }
    return failWith(failure, status, sink.systemError());
}

bool makePlace(const StartPlan &plan, const Executable &executable, Archive &archive,
               std::uint64_t totalBytes, const Owned<ProgressWindow> &window, Place &place,
               Failure &failure)
{
    const Status status = openKeptFolder(plan, archive, window, place.kept);
    if (status != Status::Ok) {
        return failWith(failure, status);
    }
    place.application = place.kept ? &place.kept->application() : &place.folder.application();
    return place.kept
        || (makeFolder(plan, executable, totalBytes, place.folder, failure)
            && unpackInto(place.folder, archive, totalBytes, window, failure));
}

// The window that a question to the user belongs to: without one it could appear behind others.
HWND ownWindow(const Owned<ProgressWindow> &window)
{
    const HWND progress = window ? window->dialog() : nullptr;
    return progress != nullptr ? progress : GetConsoleWindow();
}

bool startProgram(Program &program, const Text &executable, const StartPlan &plan, Place &place,
                  HWND owner, Failure &failure)
{
    if (program.start(*place.application, executable, plan, failure)) {
        return true;
    }
    switch (nextStart(failure.systemError, isElevated())) {
    case NextStart::ProducedFile:
        place.folder.remove();
        return program.startElevated(executable, owner, failure);
    case NextStart::ThroughShell:
        return program.startThroughShell(plan.settings.arguments, owner, failure);
    case NextStart::None:
        break;
    }
    return false;
}

bool run(StartPlan &plan, unsigned long &exitCode, Failure &failure)
{
    Place place;
    Program program;
    {
        // The archive's tables and the file are released when the program runs, which may take
        // hours.
        Executable executable;
        if (!executable.open()) {
            return failWith(failure, Status::ReadFailed, GetLastError());
        }
        Archive archive(executable);
        std::uint64_t totalBytes = 0;
        if (!inspect(executable, plan, archive, totalBytes, failure)) {
            return false;
        }
        // The window closes when the program has started: what the process in the foreground
        // starts may come to the foreground itself.
        const Owned<ProgressWindow> window = progressWindow(plan, totalBytes);
        if (!makePlace(plan, executable, archive, totalBytes, window, place, failure)) {
            return false;
        }
        if (!setProgramEnvironment(executable.path(), *place.application)) {
            failure.code = ExitCode::StartFailed;
            failure.systemError = GetLastError();
            return false;
        }
        if (!startProgram(program, executable.path(), plan, place, ownWindow(window), failure)) {
            return false;
        }
    }
    if (place.kept) {
        place.kept->clearOthers();
    }
    Text root;
    exitCode = program.wait(folderOf(*place.application, root) ? root : *place.application);
    return true;
}

} // namespace

// Runs the module; returns the process' exit code.
unsigned runModule()
{
    HeapSetInformation(nullptr, HeapEnableTerminationOnCorruption, nullptr, 0);
    // At log-off, end after the program: it would end together with this process.
    SetProcessShutdownParameters(lastOfApplications, 0);
    findStandardHandles();
    handleConsoleEvents();
    StartPlan plan;
    Failure failure;
    unsigned long exitCode = 0;
    if (run(plan, exitCode, failure)) {
        return exitCode;
    }
    showFailure(failure, plan.title(), plan.isSilent());
    return static_cast<unsigned>(failure.code);
}

} // namespace sfx
