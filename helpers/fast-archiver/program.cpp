// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/fast-archiver/program.h"

#include "helpers/fast-archiver/machine.h"
#include "helpers/fast-archiver/makearchive.h"
#include "helpers/fast-archiver/progressline.h"

#include <chrono>
#include <cstdio>
#include <future>
#include <new>
#include <system_error>

namespace fast {

namespace {

constexpr std::chrono::milliseconds betweenLooks{100};

std::atomic<bool> isInterrupted = false;

Outcome<Summary> makeWithinMemory(const Request &request, Progress &progress)
{
    try {
        return makeArchive(request, progress);
    } catch (const std::bad_alloc &) {
        return Failure{ExitStatus::NoMemory, "there is not enough memory"};
    }
}

// Makes the archive on another thread, so that a line is printed every few seconds whatever happens
// there.
Outcome<Summary> makeAndShowProgress(const Request &request)
{
    Progress progress(isInterrupted);
    std::future<Outcome<Summary>> result;
    try {
        result
            = std::async(std::launch::async, [&] { return makeWithinMemory(request, progress); });
    } catch (const std::system_error &) {
        return Failure{ExitStatus::NoMemory, "the system has no free thread"};
    }
    ProgressLine line(stdout);
    do {
        line.show(progress.line(), ProgressLine::Clock::now());
    } while (result.wait_for(betweenLooks) != std::future_status::ready);
    line.hide();
    return result.get();
}

void printSummary(const Summary &summary)
{
    const std::string text = std::to_string(summary.folders) + " folders, "
        + std::to_string(summary.files) + " files, " + std::to_string(summary.bytes)
        + " bytes\nArchive size: " + std::to_string(summary.archiveSize)
        + " bytes\nEverything is Ok\n";
    std::fputs(text.c_str(), stdout);
    std::fflush(stdout);
}

int tellFailure(const Failure &failure)
{
    std::fprintf(stderr, "ERROR: %s\n",
                 failure.message.empty() ? "Break signaled" : failure.message.c_str());
    return static_cast<int>(failure.status);
}

} // namespace

int runArchiverProgram(const Arguments &arguments)
{
    const auto request = parseArguments(arguments);
    if (request.hasFailed()) {
        return tellFailure(request.failure());
    }
    stopWhenInterrupted(isInterrupted);
    std::printf("Creating archive: %s\n\n", pe::utf8Of(request.value().archive).c_str());
    std::fflush(stdout);
    const auto made = makeAndShowProgress(request.value());
    if (made.hasFailed()) {
        return tellFailure(made.failure());
    }
    printSummary(made.value());
    return static_cast<int>(ExitStatus::Done);
}

} // namespace fast
