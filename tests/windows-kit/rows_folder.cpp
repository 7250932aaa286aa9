// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/windows-kit/rows.h"

#include "tests/windows-kit/files.h"
#include "tests/windows-kit/process.h"
#include "tests/windows-kit/product.h"
#include "tests/windows-kit/security.h"
#include "tests/windows-kit/system.h"
#include "tests/windows-kit/text.h"

#include <optional>

namespace kit {

namespace {

// Starts the usual product with --wait. Returns its notes, which are empty if it did not start.
Notes startWaiting(const Place &place, const ProbeControl &probe, Process &product,
                   const std::wstring &arguments = L"--wait")
{
    const std::wstring file = placeProduct(place);
    return !file.empty() && product.start(Start(file, arguments)) ? probe.waitForNotes(product)
                                                                  : Notes();
}

// A start that only ends; it removes what earlier starts have left.
Ended startAgain(const Place &place)
{
    return run(Start(place.path(L"product.exe"), L"--exit=3"), place.temp);
}

std::string joined(const std::vector<std::wstring> &names)
{
    std::string text;
    for (const std::wstring &name : names) {
        text += ' ' + utf8(name);
    }
    return text;
}

// The rights of the private folder while the product runs; nothing if it does not start.
std::optional<FolderSecurity> securityWhileItRuns(const Place &place, Check &check)
{
    const ProbeControl probe(place);
    Process product;
    const Notes notes = startWaiting(place, probe, product);
    if (!check.that(notes.isThere(), "the product did not start")) {
        return std::nullopt;
    }
    const FolderSecurity security = securityOf(privateFolder(notes));
    check.note(security.text);
    return security;
}

} // namespace

Result folderRights(const Place &place)
{
    Check check;
    const auto security = securityWhileItRuns(place, check);
    if (!security) {
        return check.result();
    }
    check.that(security->error == 0, "cannot be read: " + systemText(security->error));
    check.that(security->isProtected, "inherits from the folder above");
    for (const std::string &account : security->accounts) {
        check.that(account == systemSid || account == administratorsSid || account == userSid(),
                   "lets " + account + " in");
    }
    check.that(!security->accounts.empty(), "has no access list");
    check.that(security->owner == userSid()
                   || (isElevated() && security->owner == administratorsSid),
               "belongs to " + security->owner);
    return check.result();
}

Result folderRightsElevated(const Place &place)
{
    if (elevationType() != Elevation::Full) {
        return notJudged(notByUac);
    }
    Check check;
    const auto security = securityWhileItRuns(place, check);
    if (!security) {
        return check.result();
    }
    check.that(!security->userMayWrite, "the user's programs without the rights may write it");
    check.that(security->isLabelledHigh, "it has no label of high integrity");
    return check.result();
}

Result folderNameIsStable(const Place &place)
{
    placeProduct(place);
    const ProbeControl probe(place);
    const Ended first = startAgain(place);
    const std::string before = probe.notes()["dir"];
    const Ended second = startAgain(place);
    const std::string after = probe.notes()["dir"];
    Check check;
    check.that(first.exitCode == 3 && second.exitCode == 3, first.text() + "; " + second.text());
    check.that(before == after, before + ", then " + after);
    return check.result();
}

Result folderNamesDiffer(const Place &place)
{
    const ProbeControl first(place, L"1.txt");
    Process one;
    const Notes before = startWaiting(place, first, one);
    const ProbeControl second(place, L"2.txt");
    Process other;
    const Notes after = other.start(Start(place.path(L"product.exe"), L"--wait"))
        ? second.waitForNotes(other)
        : Notes();
    Check check;
    check.that(before.isThere() && after.isThere(), "the product did not start");
    check.that(before["dir"] != after["dir"], "both use " + before["dir"]);
    check.that(after["data"] == dataLine, "the second has no data");
    return check.result();
}

Result killedStart(const Place &place)
{
    Check check;
    {
        const ProbeControl probe(place);
        Process product;
        const Notes notes = startWaiting(place, probe, product);
        if (!check.that(notes.isThere(), "the product did not start")) {
            return check.result();
        }
        Process program;
        program.open(notes.id());
        product.kill();
        check.that(program.handle() == nullptr || program.wait(),
                   "the program still runs after its module was killed");
        check.that(!leftovers(place).empty(), "a killed start left nothing, so nothing is shown");
    }
    const Ended again = startAgain(place);
    check.that(again.exitCode == 3, again.text());
    check.that(leftovers(place).empty(), "the next start left" + joined(leftovers(place)));
    return check.result();
}

namespace {

// Opens a file of the running product, lets the product end, and looks whether its other files are
// there while the file is held.
struct Held
{
    bool hasStarted = false;
    bool hasEnded = false;
    std::uint32_t exitCode = 0;
    std::vector<std::wstring> leftWhileHeld;
    bool areOthersThere = false;
};

Held holdAtRemoval(const Place &place)
{
    Held held;
    ProbeControl probe(place);
    Process product;
    const Notes notes = startWaiting(place, probe, product, L"--wait --exit=6");
    held.hasStarted = notes.isThere();
    if (!held.hasStarted) {
        return held;
    }
    const std::wstring folder = wide(notes["dir"]);
    const HANDLE file = CreateFileW((folder + L"\\data.txt").c_str(), GENERIC_READ, FILE_SHARE_READ,
                                    nullptr, OPEN_EXISTING, 0, nullptr);
    probe.release();
    held.hasEnded = product.wait();
    held.exitCode = product.exitCode();
    held.leftWhileHeld = leftovers(place);
    held.areOthersThere = exists(folder + L"\\kit-probe.exe")
        && exists(folder + L"\\folder\\inner.txt");
    CloseHandle(file);
    return held;
}

} // namespace

Result heldFileAtRemoval(const Place &place)
{
    const Held held = holdAtRemoval(place);
    Check check;
    check.that(held.hasStarted, "the product did not start");
    check.that(held.hasEnded && held.exitCode == 6, "the product did not end with its code");
    check.that(!held.leftWhileHeld.empty(), "the folder was removed although a file was held");
    const Ended again = startAgain(place);
    check.that(again.exitCode == 3, again.text());
    check.that(leftovers(place).empty(), "the next start left" + joined(leftovers(place)));
    return check.result();
}

Result heldFileKeepsTheOthers(const Place &place)
{
    const Held held = holdAtRemoval(place);
    Check check;
    check.that(held.hasStarted && held.hasEnded, "the product did not start or end");
    check.that(held.areOthersThere, "the other files were removed");
    return check.result();
}

Result breakawayChild(const Place &place)
{
    if (!wineVersion().empty()) {
        return notJudged("Wine: it keeps such programs in the job");
    }
    ProbeControl probe(place);
    Process product;
    Check check;
    const Notes notes = startWaiting(place, probe, product, L"--breakaway --exit=4");
    if (!check.that(notes.isThere(), "the product did not start")) {
        return check.result();
    }
    const Notes child = probe.waitForChild();
    check.that(child.isThere(), "the second program did not start");
    check.that(product.wait() && product.exitCode() == 4, "the product did not end with its code");
    const std::wstring folder = wide(notes["dir"]);
    for (const wchar_t *name : {L"kit-probe.exe", L"data.txt", L"folder\\inner.txt"}) {
        check.that(exists(folder + L'\\' + name), utf8(name) + " was removed while it ran");
    }
    Process program;
    program.open(child.id());
    probe.release();
    program.wait();
    startAgain(place);
    check.that(leftovers(place).empty(), "the next start left" + joined(leftovers(place)));
    return check.result();
}

} // namespace kit
