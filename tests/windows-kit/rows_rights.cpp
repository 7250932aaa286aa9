// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/windows-kit/rows.h"

#include "tests/windows-kit/files.h"
#include "tests/windows-kit/process.h"
#include "tests/windows-kit/product.h"
#include "tests/windows-kit/security.h"
#include "tests/windows-kit/system.h"
#include "tests/windows-kit/text.h"
#include "tests/windows-kit/token.h"

// Programs that ask for more rights, and starts with more or fewer rights than usual.
namespace kit {

namespace {

// docs/self-extractor.md, "Exit codes"
constexpr std::uint32_t cannotBeStarted = 0x4b5000d2;
constexpr DWORD elevationRequired = 740; // ERROR_ELEVATION_REQUIRED
constexpr const char *byAPerson = "Windows would ask; a person answers (1 and 2 at the end)";

// The probe with another manifest. It has the old one's length, so nothing else changes.
std::string probeAskingFor(const Place &place, const std::string &level, const std::string &access)
{
    std::string program = readFile(place.file(L"kit-probe.exe"));
    const std::size_t begin = program.find("<?xml");
    const std::size_t end = program.find("</assembly>", begin);
    std::string manifest
        = "<assembly xmlns=\"urn:schemas-microsoft-com:asm.v1\" manifestVersion=\"1.0\">"
          "<trustInfo xmlns=\"urn:schemas-microsoft-com:asm.v3\"><security><requestedPrivileges>"
          "<requestedExecutionLevel level=\""
        + level + "\" uiAccess=\"" + access
        + "\"/></requestedPrivileges></security></trustInfo></assembly>";
    if (begin == std::string::npos || end == std::string::npos || manifest.size() > end - begin) {
        return {};
    }
    manifest.resize(end - begin + std::string("</assembly>").size(), ' ');
    return program.replace(begin, manifest.size(), manifest);
}

std::string administratorProbe(const Place &place)
{
    return probeAskingFor(place, "requireAdministrator", "false");
}

std::string uiAccessProbe(const Place &place)
{
    return probeAskingFor(place, "asInvoker", "true");
}

// Starts a product with `probe` in the place of the usual one.
Result runProductOf(const Place &place, const std::string &probe,
                    const std::vector<std::uint32_t> &exitCodes)
{
    std::vector<Entry> entries = probeEntries(place);
    entries[0].content = probe;
    const std::wstring product = place.path(L"product.exe");
    if (probe.empty() || !writeProduct(place, product, L"kit-probe.exe", entries)) {
        return fail("the product cannot be written");
    }
    const Ended ended = run(Start(product, L"--exit=5"), place.folder);
    Check check;
    bool isExpected = false;
    for (const std::uint32_t exitCode : exitCodes) {
        isExpected = isExpected || ended.exitCode == exitCode;
    }
    check.that(ended.isByItself && isExpected, ended.text());
    check.that(leftovers(place).empty(), "it left its folder");
    check.note("ended with " + hex(ended.exitCode));
    return check.result();
}

// The error of a plain start of `probe`; 0 if it starts.
DWORD errorOfStart(const Place &place, const std::string &probe)
{
    const std::wstring program = place.path(L"asking.exe");
    Process process;
    writeFile(program, probe);
    return process.start(Start(program, L"--exit=5")) ? 0 : process.error();
}

} // namespace

// The module starts itself again with more rights on this error.
Result refusalOfMoreRights(const Place &place)
{
    if (!asksForConsent()) {
        return notJudged("Windows refuses nothing to this process: it is elevated, or UAC is off");
    }
    Check check;
    const DWORD administrator = errorOfStart(place, administratorProbe(place));
    const DWORD access = errorOfStart(place, uiAccessProbe(place));
    check.that(administrator == elevationRequired,
               "for administrator's rights: " + systemText(administrator));
    check.that(access == elevationRequired, "for uiAccess: " + systemText(access));
    return check.result();
}

Result programForAdministrators(const Place &place)
{
    return asksForConsent() ? notJudged(byAPerson)
                            : runProductOf(place, administratorProbe(place), {5});
}

// Windows allows uiAccess to signed programs only, so it may refuse the probe: but without a hang.
Result programWithUiAccess(const Place &place)
{
    return asksForConsent() ? notJudged(byAPerson)
                            : runProductOf(place, uiAccessProbe(place), {5, cannotBeStarted});
}

Result startInSandbox(const Place &place)
{
    const Token token = Token::ofSandbox();
    if (!token.error().empty()) {
        return notJudged(token.error());
    }
    copyFile(place.file(L"kit-probe.exe"), place.path(L"kit-probe.exe"));
    writeFile(place.path(L"data.txt"), dataLine + "\r\n");
    const std::wstring product = placeProduct(place);
    const Ended allowed = run(Start(systemProgram(L"icacls.exe"),
                                    L"\"" + place.folder + L"\" /grant *S-1-5-12:(OI)(CI)F /t /q"),
                              place.temp);
    Start plain(place.path(L"kit-probe.exe"), L"--exit=5");
    plain.token = token.get();
    const Ended alone = run(plain, place.folder);
    if (!alone.isByItself || alone.exitCode != 5) {
        return notJudged("there a program does not even run alone: " + alone.text()
                         + "; icacls: " + allowed.text());
    }
    const ProbeControl probe(place);
    Start start(product, L"--print=here --exit=5");
    start.token = token.get();
    const Ended ended = run(start, place.folder);
    Check check;
    check.that(ended.isByItself && ended.exitCode == 5, ended.text());
    check.that(probe.notes()["data"] == dataLine, "its data are missing");
    check.that(leftovers(place).empty(), "it left its folder");
    return check.result();
}

namespace {

// What a program of the same user without the rights can do in the folder; an empty text if nothing.
std::string harmDoneBy(const Token &medium, const std::wstring &root, const std::wstring &folder)
{
    constexpr DWORD shareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    const RightsOfThread rights(medium);
    if (!rights.isThere()) {
        return {};
    }
    std::string done;
    const auto open = [](const std::wstring &path, DWORD disposition) {
        const HANDLE file
            = CreateFileW(path.c_str(), GENERIC_WRITE, shareAll, nullptr, disposition, 0, nullptr);
        return file != INVALID_HANDLE_VALUE && CloseHandle(file);
    };
    done += MoveFileExW(root.c_str(), (root + L"-moved").c_str(), 0) ? " rename it," : "";
    done += open(folder + L"\\data.txt", OPEN_EXISTING) ? " write a file," : "";
    done += open(folder + L"\\new.dll", CREATE_NEW) ? " add a file," : "";
    done += DeleteFileW((folder + L"\\folder\\inner.txt").c_str()) ? " remove a file," : "";
    return done;
}

} // namespace

Result folderIsClosedToOthers(const Place &place)
{
    if (elevationType() != Elevation::Full) {
        return notJudged(notByUac);
    }
    const Token medium = Token::ofMediumProgram();
    const ProbeControl probe(place);
    Process product;
    const Notes notes = product.start(Start(placeProduct(place), L"--wait"))
        ? probe.waitForNotes(product)
        : Notes();
    const std::wstring folder = wide(notes["dir"]);
    // The same folder with the usual rights, so that the row shows what the rights prevent.
    const std::wstring open = place.path(L"open");
    makeFolder(open + L"\\folder");
    writeFile(open + L"\\data.txt", "");
    Check check;
    check.that(medium.error().empty(), medium.error());
    check.that(contains(harmDoneBy(medium, open, open + L"-moved"), " rename it, write a file"),
               "they cannot even change an open folder, so nothing is shown");
    if (!check.that(notes.isThere(), "the product did not start")) {
        return check.result();
    }
    const std::string done = harmDoneBy(medium, privateFolder(notes), folder);
    check.that(done.empty(), "the user's programs without the rights can" + done);
    return check.result();
}

} // namespace kit
