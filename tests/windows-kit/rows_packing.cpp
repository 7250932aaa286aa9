// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/windows-kit/rows.h"

#include "tests/windows-kit/files.h"
#include "tests/windows-kit/inconsole.h"
#include "tests/windows-kit/process.h"
#include "tests/windows-kit/product.h"
#include "tests/windows-kit/system.h"
#include "tests/windows-kit/text.h"

#include <cstring>
#include <random>

namespace kit {

namespace {

bool makeSource(const Place &place, const std::wstring &folder)
{
    return makeFolder(folder) && copyFile(place.file(L"kit-probe.exe"), folder + L"\\kit-probe.exe")
        && writeFile(folder + L"\\data.txt", dataLine + "\r\n");
}

// A folder to pack, with the probe and its data. Returns its path, or an empty text on failure.
std::wstring placeSource(const Place &place)
{
    const std::wstring folder = place.path(L"\u6e90 source");
    return makeSource(place, folder) ? folder : std::wstring();
}

std::wstring packingArguments(const Place &place, const std::wstring &source)
{
    return L"--output \"" + place.path(L"out") + L"\" \"" + source + L'"';
}

Result packsAndRuns(const Place &place, const std::wstring &source,
                    const std::wstring &options = std::wstring())
{
    Check check;
    const Ended packed
        = run(Start(place.file(L"kestrelpack-cli.exe"), options + packingArguments(place, source)),
              place.folder);
    check.that(packed.isByItself && packed.exitCode == 0, packed.text());
    const ProbeControl probe(place);
    const Ended ended
        = run(Start(place.path(L"out\\kit-probe.exe"), L"--print=here --exit=5"), place.folder);
    check.that(ended.isByItself && ended.exitCode == 5 && startsWith(ended.output, "here"),
               "the product: " + ended.text());
    check.that(probe.notes()["data"] == dataLine, "its data are missing");
    check.note("packed in " + std::to_string(packed.milliseconds) + " ms, ran in "
               + std::to_string(ended.milliseconds) + " ms");
    return check.result();
}

} // namespace

Result terminalProgramPacks(const Place &place)
{
    const std::wstring source = placeSource(place);
    return source.empty() ? fail("the folder to pack cannot be made") : packsAndRuns(place, source);
}

Result fastArchiverPacks(const Place &place)
{
    const std::wstring source = placeSource(place);
    return source.empty() ? fail("the folder to pack cannot be made")
                          : packsAndRuns(place, source, L"--profile fast-start ");
}

Result fastArchiverPacksLongPaths(const Place &place)
{
    std::wstring source = place.path(L"source");
    while (source.size() < 270) {
        source += L"\\a folder with a long name";
    }
    return makeSource(place, source) ? packsAndRuns(place, source, L"--profile fast-start ")
                                     : fail("the folder to pack cannot be made");
}

// Files in OneDrive's folder have attributes and a state that no other folder gives them.
Result packingFromOneDrive(const Place &place)
{
    std::wstring cloud;
    for (const wchar_t *name : {L"OneDriveCommercial", L"OneDriveConsumer", L"OneDrive"}) {
        const std::wstring folder = variable(name);
        cloud = !folder.empty() && exists(folder) ? folder : cloud;
    }
    if (cloud.empty()) {
        return notJudged("no OneDrive folder is set up here (6 at the end)");
    }
    const std::wstring source = cloud + L"\\kestrelpack-kit";
    if (exists(source) || !makeSource(place, source)) {
        return notJudged("the folder kestrelpack-kit in OneDrive cannot be made, or it exists");
    }
    Result result = packsAndRuns(place, source);
    result.reason += " [attributes " + hex(GetFileAttributesW(source.c_str())) + " and "
        + hex(GetFileAttributesW((source + L"\\data.txt").c_str())) + "]";
    removeFolder(source);
    return result;
}

Result escapeSequences(const Place &place)
{
    const std::wstring source = placeSource(place);
    const InConsole seen
        = runInConsole(place, place.file(L"kestrelpack-cli.exe"), packingArguments(place, source));
    Check check;
    check.that(seen.error.empty(), seen.error);
    check.that(seen.exitCode == 0, "packing ended with " + hex(seen.exitCode));
    check.that(contains(seen.screen, "kit-probe"), "the screen shows: " + oneLine(seen.screen));
    check.that(!contains(seen.screen, "\x1b"), "the screen has escape characters");
    check.that(seen.modeBefore == seen.modeAfter,
               "the console's mode was " + hex(seen.modeBefore) + " and is " + hex(seen.modeAfter));
    check.note("the console's mode is " + hex(seen.modeBefore));
    return check.result();
}

namespace {

std::uint64_t bytesIn(const std::wstring &folder)
{
    std::uint64_t bytes = 0;
    for (const std::wstring &name : namesIn(folder)) {
        const std::wstring path = folder + L'\\' + name;
        const bool isFolder = (GetFileAttributesW(path.c_str()) & FILE_ATTRIBUTE_DIRECTORY) != 0;
        bytes += isFolder ? bytesIn(path) : sizeOf(path);
    }
    return bytes;
}

// Bytes without a pattern, which take the archiver some time.
std::string noise(std::size_t size)
{
    std::mt19937_64 numbers;
    std::string bytes(size, '\0');
    for (std::size_t i = 0; i + 8 <= size; i += 8) {
        const std::uint64_t number = numbers();
        std::memcpy(bytes.data() + i, &number, 8);
    }
    return bytes;
}

// A job in a hidden console that belongs to `caller`.
bool startLongJob(const Place &place, Process &caller)
{
    const std::wstring source = placeSource(place);
    writeFile(source + L"\\noise.bin", noise(200'000'000));
    Start start(ownProgram(),
                L"--call - \"" + place.file(L"kestrelpack-cli.exe") + L"\" --level ultra "
                    + packingArguments(place, source));
    start.flags = CREATE_NEW_CONSOLE;
    start.info.dwFlags = STARTF_USESHOWWINDOW;
    start.info.wShowWindow = SW_HIDE;
    return caller.start(start);
}

} // namespace

// A program in the middle owns the console, as cmd does. Windows kills the job five seconds after the
// console was closed; until then the job has to clean up.
Result consoleClosesDuringJob(const Place &place)
{
    if (!wineVersion().empty()) {
        return notJudged("Wine: its consoles take their programs along before these clean up");
    }
    constexpr std::uint64_t inTheMiddle = 20'000'000; // the helpers have less
    Process caller;
    Check check;
    if (!check.that(startLongJob(place, caller), "did not start")) {
        return check.result();
    }
    waitUntil([&] { return bytesIn(place.temp) > inTheMiddle || !caller.isRunning(); });
    if (!caller.isRunning()) {
        return fail("the job ended with " + hex(caller.exitCode()) + " before the console closed");
    }
    if (!check.that(closeConsoleOf(caller.id(), place), "the console cannot be closed")) {
        return check.result();
    }
    check.that(caller.wait(), "the caller still runs");
    const bool isArchiveGone = waitUntil([&] { return bytesIn(place.temp) < inTheMiddle; });
    if (!check.that(isArchiveGone, "the job left its archive in the temporary folder")) {
        return check.result();
    }
    const std::wstring out = place.path(L"out");
    check.that(waitUntil([&] { return namesIn(out, L"*.tmp").empty(); }),
               "the job left its folder");
    check.that(!exists(out + L"\\kit-probe.exe"), "the job went on");
    return check.result();
}

} // namespace kit
