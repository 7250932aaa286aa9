// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/windows-kit/systemtask.h"

#include "tests/windows-kit/files.h"
#include "tests/windows-kit/process.h"
#include "tests/windows-kit/security.h"
#include "tests/windows-kit/text.h"

namespace kit {

namespace {

Ended schtasks(const Place &place, const std::wstring &arguments)
{
    return run(Start(systemProgram(L"schtasks.exe"), arguments), place.temp);
}

} // namespace

std::string runAsSystem(const Place &place, const std::string &lines)
{
    if (!isElevated()) {
        return "only an administrator can make a task of the system account; a person can start the "
               "product in a service";
    }
    const std::wstring script = place.path(L"task.cmd");
    const std::wstring name = L"kestrelpack-kit-" + std::to_wstring(GetCurrentProcessId());
    writeFile(script,
              "@echo off\r\n>\"%~dp0begun.txt\" echo yes\r\n" + lines
                  + ">\"%~dp0ended.txt\" echo yes\r\n");
    const Ended made = schtasks(place,
                                L"/create /f /ru SYSTEM /sc once /st 00:00 /tn " + name
                                    + L" /tr \"\\\"" + script + L"\\\"\"");
    if (!made.isByItself || made.exitCode != 0) {
        return "the task cannot be made: " + made.text();
    }
    const Ended started = schtasks(place, L"/run /tn " + name);
    // Windows starts no such tasks on battery.
    const bool hasBegun = started.exitCode == 0
        && waitUntil([&] { return exists(place.path(L"begun.txt")); });
    const bool hasEnded = hasBegun && waitUntil([&] { return exists(place.path(L"ended.txt")); });
    if (!hasEnded) {
        schtasks(place, L"/end /tn " + name);
    }
    schtasks(place, L"/delete /f /tn " + name);
    return hasEnded ? ""
        : hasBegun  ? "the task did not end"
                    : "the task did not begin (on battery?): " + started.text();
}

} // namespace kit
