// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/windows-kit/rows.h"

#include "tests/windows-kit/files.h"
#include "tests/windows-kit/inconsole.h"
#include "tests/windows-kit/process.h"
#include "tests/windows-kit/product.h"
#include "tests/windows-kit/text.h"

namespace kit {

namespace {

// A folder to pack, with the probe and its data. Returns its path, or an empty text on failure.
std::wstring placeSource(const Place &place)
{
    const std::wstring folder = place.path(L"\u6e90 source");
    const bool done = makeFolder(folder)
        && copyFile(place.file(L"kit-probe.exe"), folder + L"\\kit-probe.exe")
        && writeFile(folder + L"\\data.txt", dataLine + "\r\n");
    return done ? folder : std::wstring();
}

std::wstring packingArguments(const Place &place, const std::wstring &source)
{
    return L"--output \"" + place.path(L"out") + L"\" \"" + source + L'"';
}

} // namespace

Result terminalProgramPacks(const Place &place)
{
    const std::wstring source = placeSource(place);
    if (source.empty()) {
        return fail("the folder to pack cannot be made");
    }
    Check check;
    const Ended packed
        = run(Start(place.file(L"kestrelpack-cli.exe"), packingArguments(place, source)),
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

} // namespace kit
