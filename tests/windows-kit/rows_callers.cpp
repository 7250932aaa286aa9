// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/windows-kit/rows.h"

#include "tests/windows-kit/files.h"
#include "tests/windows-kit/process.h"
#include "tests/windows-kit/product.h"
#include "tests/windows-kit/text.h"

// cmd and PowerShell are started with a new console without a window, and without redirected
// handles, so that the redirections are theirs. They need not wait for a product, so a row waits
// until the product has ended.
namespace kit {

namespace {

bool preparePlace(const Place &place, Kind kind = Kind::Desktop)
{
    const std::wstring product = placeProduct(place, kind);
    SetEnvironmentVariableW(L"KIT_PRODUCT", product.c_str());
    return !product.empty();
}

bool startCmd(const Place &place, Process &cmd, const std::wstring &line)
{
    Start start(systemProgram(L"cmd.exe"), L"/d /c " + line);
    start.folder = place.folder;
    return cmd.start(start);
}

std::wstring scriptLine(const Place &place, const std::wstring &row)
{
    return L"\"\"" + place.kit + L"\\callers.cmd\" " + row + L"\"";
}

bool startPowerShell(const Place &place, Process &shell, const std::wstring &row)
{
    Start start(systemProgram(L"WindowsPowerShell\\v1.0\\powershell.exe"),
                L"-NoProfile -ExecutionPolicy Bypass -File \"" + place.kit + L"\\callers.ps1\" "
                    + row);
    start.folder = place.folder;
    return shell.start(start);
}

// The program that Wine puts in its place ends with 0, whatever the script says.
bool isPowerShellThere(const Place &place)
{
    static const bool isThere = [&place] {
        Process shell;
        return startPowerShell(place, shell, L"present") && shell.wait() && shell.exitCode() == 77;
    }();
    return isThere;
}

// Runs a row of the scripts and waits until its product has ended, too.
struct Caller
{
    bool hasEnded = false;
    Notes notes;
    std::string left; // the content of out.txt
};

Caller finish(const Place &place, const ProbeControl &probe, Process &shell)
{
    Caller caller;
    caller.hasEnded = shell.wait() && waitUntil([&] { return exists(probe.path()); })
        && waitUntil([&] { return leftovers(place).empty(); });
    caller.notes = probe.notes();
    caller.left = readFile(place.path(L"out.txt"));
    return caller;
}

Result cmdRow(const Place &place, const wchar_t *row, const std::string &expected,
              const char *key = nullptr, const char *kind = nullptr)
{
    const ProbeControl probe(place);
    Process cmd;
    Check check;
    if (!check.that(preparePlace(place), "the product cannot be copied")
        || !check.that(startCmd(place, cmd, scriptLine(place, row)), "cmd cannot be started")) {
        return check.result();
    }
    const Caller caller = finish(place, probe, cmd);
    check.that(caller.hasEnded, "cmd or the product did not end");
    check.that(oneLine(caller.left) == expected,
               "expected \"" + expected + "\", got \"" + oneLine(caller.left) + "\"");
    if (key != nullptr) {
        check.that(caller.notes[key] == kind,
                   std::string("the program's ") + key + " is: " + caller.notes[key]);
    }
    return check.result();
}

// `text` as PowerShell's redirection writes it (UTF-16) or as plain bytes.
std::string plain(const std::string &text)
{
    std::string result;
    for (const char c : text) {
        if (c > 0) {
            result += c;
        }
    }
    return oneLine(result);
}

Result powerShellRow(const Place &place, const wchar_t *row, const std::string &expected,
                     Kind kind = Kind::Desktop)
{
    if (!isPowerShellThere(place)) {
        return notJudged("PowerShell is missing");
    }
    const ProbeControl probe(place);
    Process shell;
    Check check;
    if (!check.that(preparePlace(place, kind), "the product cannot be copied")
        || !check.that(startPowerShell(place, shell, row), "PowerShell cannot be started")) {
        return check.result();
    }
    const Caller caller = finish(place, probe, shell);
    check.that(caller.hasEnded, "PowerShell or the product did not end");
    check.that(plain(caller.left) == expected,
               "expected \"" + expected + "\", got \"" + plain(caller.left) + "\"");
    return check.result();
}

// Returns true if `shell` ends, or writes out.txt, while the product that it started still runs.
bool goesOn(const Place &place, ProbeControl &probe, Process &shell)
{
    waitUntil([&] { return exists(probe.path()) || !shell.isRunning(); });
    // The product waits for its event now. A shell that does not wait for the product has nothing
    // else to do, so a second is long; and nothing is judged by it.
    const bool wentOn = shell.wait(3000) || exists(place.path(L"out.txt"));
    probe.release();
    shell.wait();
    waitUntil([&] { return exists(probe.path()) && leftovers(place).empty(); });
    return wentOn;
}

} // namespace

Result cmdOutputToFile(const Place &place)
{
    return cmdRow(place, L"output-to-file", "one", "output", "file");
}

Result cmdErrorsToFile(const Place &place)
{
    return cmdRow(place, L"errors-to-file", "two", "errors", "file");
}

Result cmdOutputToNothing(const Place &place)
{
    return cmdRow(place, L"output-to-nothing", "", "output", "device");
}

Result cmdPipe(const Place &place)
{
    return cmdRow(place, L"pipe", "four", "output", "pipe");
}

Result cmdForLoop(const Place &place)
{
    return cmdRow(place, L"for-loop", "five", "output", "pipe");
}

Result cmdInputFromFile(const Place &place)
{
    if (!writeFile(place.path(L"in.txt"), "a line of input\r\n")) {
        return fail("in.txt cannot be written");
    }
    return cmdRow(place, L"input-from-file", "a line of input", "input", "file");
}

Result cmdConsole(const Place &place)
{
    return cmdRow(place, L"console", "", "output", "console");
}

Result cmdErrorLevel(const Place &place)
{
    return cmdRow(place, L"error-level", "42");
}

Result cmdStartWait(const Place &place)
{
    return cmdRow(place, L"start-wait", "43");
}

Result cmdPrompt(const Place &place)
{
    ProbeControl probe(place);
    Process cmd;
    if (!preparePlace(place)
        || !startCmd(place, cmd, L"\"\"" + place.path(L"product.exe") + L"\" --wait\"")) {
        return fail("cmd cannot be started");
    }
    return notJudged(goesOn(place, probe, cmd) ? "cmd does not wait for the product"
                                               : "cmd waits for the product");
}

Result powerShellOutFile(const Place &place)
{
    return powerShellRow(place, L"out-file", "one");
}

Result powerShellRedirection(const Place &place)
{
    return powerShellRow(place, L"redirection", "two");
}

Result powerShellVariable(const Place &place)
{
    return powerShellRow(place, L"variable", "<three>");
}

Result powerShellExitCode(const Place &place)
{
    return powerShellRow(place, L"exit-code", "42");
}

Result powerShellStartProcess(const Place &place)
{
    return powerShellRow(place, L"start-process", "43");
}

Result powerShellStartProcessRedirected(const Place &place)
{
    return powerShellRow(place, L"start-process-redirected", "four");
}

Result powerShellPlain(const Place &place)
{
    if (!isPowerShellThere(place)) {
        return notJudged("PowerShell is missing");
    }
    ProbeControl probe(place);
    Process shell;
    if (!preparePlace(place) || !startPowerShell(place, shell, L"plain")) {
        return fail("PowerShell cannot be started");
    }
    return notJudged(goesOn(place, probe, shell) ? "PowerShell does not wait for the product"
                                                 : "PowerShell waits for the product");
}

Result consolePowerShell(const Place &place)
{
    return powerShellRow(place, L"plain-exit-code", "42", Kind::Console);
}

} // namespace kit
