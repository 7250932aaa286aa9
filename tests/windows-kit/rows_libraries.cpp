// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/windows-kit/rows.h"

#include "tests/windows-kit/files.h"
#include "tests/windows-kit/process.h"
#include "tests/windows-kit/product.h"
#include "tests/windows-kit/text.h"

#include <vector>

// A program that loads a library from its own folder cannot start beside an empty file of that name:
// an empty file is no library.
namespace kit {

namespace {

constexpr const wchar_t *libraries[]
    = {L"CRYPTBASE.dll", L"version.dll", L"dwmapi.dll",   L"uxtheme.dll", L"winmm.dll",
       L"bcrypt.dll",    L"profapi.dll", L"wtsapi32.dll", L"userenv.dll", L"netapi32.dll"};

// What Qt needs in addition, and what netapi32.dll passes its calls on to.
const std::vector<const wchar_t *> librariesOfWindow
    = {L"NETUTILS.dll", L"SRVCLI.dll", L"WKSCLI.dll", L"authz.dll",
       L"d3d9.dll",     L"d3d11.dll",  L"dxgi.dll",   L"dwrite.dll"};

// The program runs alone first, then beside each library. `works` starts it and says whether it
// worked.
template <typename Works>
Result besideEach(const Place &place, Works works, const std::vector<const wchar_t *> &further = {})
{
    std::vector<const wchar_t *> planted(std::begin(libraries), std::end(libraries));
    planted.insert(planted.end(), further.begin(), further.end());
    Check check;
    check.that(works(), "does not even run alone");
    std::string failed;
    for (const wchar_t *library : planted) {
        const std::wstring file = place.path(library);
        writeFile(file, "");
        if (!works()) {
            failed += (failed.empty() ? "" : ", ") + utf8(library);
        }
        DeleteFileW(file.c_str());
    }
    check.that(failed.empty(), "does not run beside an empty " + failed);
    check.note(std::to_string(planted.size()) + " libraries, one at a time");
    return check.result();
}

// The output is elsewhere: the program's own folder has nothing but what a row plants.
Result programBesideEach(const Place &place, const wchar_t *name, const std::wstring &arguments,
                         std::uint32_t exitCode)
{
    const std::wstring program = place.path(name);
    if (!copyFile(place.file(name), program)) {
        return fail("the program cannot be copied");
    }
    return besideEach(place, [&] {
        const Ended ended = run(Start(program, arguments), place.temp);
        return ended.isByItself && ended.exitCode == exitCode;
    });
}

} // namespace

Result emptyLibrariesBesideProduct(const Place &place)
{
    const std::wstring product = placeProduct(place);
    return besideEach(place, [&] {
        const Ended ended = run(Start(product, L"--print=here --exit=5"), place.temp);
        return ended.isByItself && ended.exitCode == 5 && startsWith(ended.output, "here");
    });
}

Result emptyLibrariesBesideTerminalProgram(const Place &place)
{
    return programBesideEach(place, L"kestrelpack-cli.exe", L"--version", 0);
}

// The window is there when the program waits for input.
Result emptyLibrariesBesideWindow(const Place &place)
{
    const std::wstring program = place.path(L"Kestrelpack.exe");
    if (!copyFile(place.file(L"Kestrelpack.exe"), program)) {
        return fail("the program cannot be copied");
    }
    const auto works = [&] {
        Process process;
        return process.start(Start(program)) && WaitForInputIdle(process.handle(), patience) == 0
            && process.isRunning();
    };
    return besideEach(place, works, librariesOfWindow);
}

Result emptyLibrariesBesideArchiver(const Place &place)
{
    return programBesideEach(place, L"7zr.exe", L"i", 0);
}

// Without arguments the editor says that its use was wrong.
Result emptyLibrariesBesideEditor(const Place &place)
{
    const Ended alone = run(Start(place.file(L"resource-editor.exe")), place.temp);
    return alone.isByItself ? programBesideEach(place, L"resource-editor.exe", L"", alone.exitCode)
                            : fail(alone.text());
}

} // namespace kit
