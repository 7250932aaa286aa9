// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/windows-kit/rows.h"

#include "tests/windows-kit/files.h"
#include "tests/windows-kit/inconsole.h"
#include "tests/windows-kit/process.h"
#include "tests/windows-kit/product.h"
#include "tests/windows-kit/text.h"
#include "tests/windows-kit/windowstation.h"

namespace kit {

namespace {

constexpr std::uint32_t damaged = 0x4b5000c9; // docs/self-extractor.md, "Exit codes"

} // namespace

Result exampleProduct(const Place &place)
{
    const std::wstring product = place.product(L"hello.exe");
    if (!exists(product)) {
        return notJudged("this kit has no product of the example");
    }
    const Ended ended = run(Start(product, L"one \"two three\" --exit 42"), place.folder);
    Check check;
    check.that(ended.isByItself && ended.exitCode == 42, ended.text());
    check.that(contains(ended.output, "This line comes from greeting.txt"), ended.text());
    check.that(contains(ended.output, "Argument 2: two three"), ended.text());
    check.that(leftovers(place).empty(), "it left its folder");
    check.note(std::to_string(ended.milliseconds) + " ms");
    return check.result();
}

Result exitCodeIsWhole(const Place &place)
{
    const Ended ended = run(Start(placeProduct(place), L"--exit=0xdeadbeef"), place.folder);
    return ended.isByItself && ended.exitCode == 0xdeadbeef ? pass() : fail(ended.text());
}

Result argumentsAreUnchanged(const Place &place)
{
    const std::wstring tail = L"a \"b c\" \\\"d\\\"  \u6e90 \U0001f985 %PATH% ^& --exit=5";
    const ProbeControl probe(place);
    const Ended ended = run(Start(placeProduct(place), tail), place.folder);
    const std::string line = probe.notes()["line"];
    const std::string expected = utf8(tail);
    Check check;
    check.that(ended.exitCode == 5, ended.text());
    check.that(line.size() > expected.size()
                   && line.compare(line.size() - expected.size(), expected.size(), expected) == 0,
               "the program got: " + line);
    return check.result();
}

namespace {

// From a process without handles and console. The exit code is all that arrives.
Result withoutHandles(const Place &place, Kind kind)
{
    const ProbeControl probe(place);
    Start start(ownProgram(), L"--call - \"" + placeProduct(place, kind) + L"\" --exit=5");
    start.flags = DETACHED_PROCESS;
    Process process;
    if (!process.start(start) || !process.wait()) {
        return fail("did not start or end");
    }
    Check check;
    check.that(process.exitCode() == 5, "ended with " + hex(process.exitCode()));
    check.that(probe.notes()["data"] == dataLine, "its data are missing");
    check.note("output: " + probe.notes()["output"]);
    return check.result();
}

} // namespace

Result startedWithoutHandles(const Place &place)
{
    return withoutHandles(place, Kind::Desktop);
}

Result consoleWithoutHandles(const Place &place)
{
    return withoutHandles(place, Kind::Console);
}

// The taskbar puts a monitor's handle into hStdOutput and says so by STARTF_HASSHELLDATA. A console
// program that gets it as its output writes into nothing.
Result startedFromTaskbar(const Place &place)
{
    const ProbeControl probe(place);
    Check check;
    const std::string ended = startAsTaskbar(place, placeProduct(place), L"--print=here --exit=5");
    if (!check.that(ended == "5", "ended with " + ended)) {
        return check.result();
    }
    const Notes notes = probe.notes();
    check.note("output: " + notes["output"] + ", flags: " + notes["flags"]);
    check.that(notes["output"] == "console", "the program has no console");
    check.that(notes["written"] == "1", "the program cannot write");
    return check.result();
}

Result serviceLike(const Place &place)
{
    HiddenStation station;
    if (!station.isThere()) {
        return notJudged("no window station: " + systemText(station.error()));
    }
    std::wstring desktop = station.name();
    Start start(placeProduct(place), L"--exit=5");
    start.flags = DETACHED_PROCESS;
    start.info.lpDesktop = desktop.data();
    Process process;
    Check check;
    check.that(process.start(start) && process.wait(), "did not start or end");
    check.that(process.exitCode() == 5, "ended with " + hex(process.exitCode()));
    return check.result();
}

Result serviceLikeFailure(const Place &place)
{
    HiddenStation station;
    if (!station.isThere()) {
        return notJudged("no window station: " + systemText(station.error()));
    }
    const std::wstring product = placeProduct(place);
    const std::string whole = readFile(product);
    writeFile(product, whole.substr(0, whole.size() - 10));
    std::wstring desktop = station.name();
    Start start(product);
    start.flags = DETACHED_PROCESS;
    start.info.lpDesktop = desktop.data();
    Process process;
    Check check;
    check.that(process.start(start), "did not start");
    bool hasBox = false;
    waitUntil([&] { return !process.isRunning() || (hasBox = station.hasBox(process.id())); });
    check.that(!hasBox, "waits for an answer to a box that nobody sees");
    check.that(!process.isRunning(), "does not end");
    if (process.isRunning()) {
        process.kill();
        return check.result();
    }
    check.that(process.exitCode() == damaged, "ended with " + hex(process.exitCode()));
    return check.result();
}

namespace {

Result interrupted(const Place &place, Kind kind)
{
    const ProbeControl probe(place);
    const std::string ended = interruptInConsole(place, placeProduct(place, kind), L"--wait");
    Check check;
    check.that(ended == std::to_string(0xc000013a), "ended with " + ended); // STATUS_CONTROL_C_EXIT
    check.that(leftovers(place).empty(), "it left its folder");
    return check.result();
}

} // namespace

Result controlC(const Place &place)
{
    return interrupted(place, Kind::Desktop);
}

Result consoleControlC(const Place &place)
{
    return interrupted(place, Kind::Console);
}

// A program in the middle owns the console, as cmd does.
Result consoleCloses(const Place &place)
{
    const ProbeControl probe(place);
    Start start(ownProgram(), L"--call - \"" + placeProduct(place) + L"\" --wait");
    start.flags = CREATE_NEW_CONSOLE;
    start.info.dwFlags = STARTF_USESHOWWINDOW;
    start.info.wShowWindow = SW_HIDE;
    Process caller;
    Check check;
    const bool started = caller.start(start);
    const Notes notes = started ? probe.waitForNotes(caller) : Notes();
    if (!check.that(notes.isThere(), "the product did not start")) {
        return check.result();
    }
    Process program;
    program.open(notes.id());
    if (!check.that(closeConsoleOf(caller.id(), place), "the console cannot be closed")) {
        return check.result();
    }
    check.that(caller.wait(), "the caller still runs");
    check.that(program.wait(), "the program still runs");
    check.that(waitUntil([&] { return areModulesGone(place); }), "the module still runs");
    check.that(leftovers(place).empty(), "the module did not remove its folder");
    return check.result();
}

// A product for the console. cmd reads the lines one after another, as a person types them.
Result consolePrompt(const Place &place)
{
    const std::wstring typed = place.path(L"typed.txt");
    SetEnvironmentVariableW(L"KIT_PRODUCT", placeProduct(place, Kind::Console).c_str());
    if (!writeFile(typed,
                   "@echo off\r\n\"%KIT_PRODUCT%\" --print=printed --exit=42\r\n"
                   "echo after %errorlevel%\r\nexit\r\n")) {
        return fail("typed.txt cannot be written");
    }
    const Ended ended = run(Start(systemProgram(L"cmd.exe"), L"/d /q"), place.temp, typed);
    const std::size_t printed = ended.output.find("printed\r\n");
    const std::size_t after = ended.output.find("after 42");
    Check check;
    check.that(ended.isByItself, ended.text());
    check.that(after != std::string::npos && printed < after, "cmd shows: " + ended.text());
    check.that(leftovers(place).empty(), "it left its folder");
    return check.result();
}

Result timeOfAStart(const Place &place)
{
    const std::wstring product = placeProduct(place);
    std::string times;
    for (int i = 0; i < 5; ++i) {
        const Ended ended = run(Start(product, L"--exit=5"), place.folder);
        if (!ended.isByItself || ended.exitCode != 5) {
            return fail(ended.text());
        }
        times += (times.empty() ? "" : ", ") + std::to_string(ended.milliseconds);
    }
    return pass(times + " ms");
}

} // namespace kit
