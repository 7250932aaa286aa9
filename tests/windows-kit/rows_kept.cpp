// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/windows-kit/rows.h"

#include "tests/windows-kit/files.h"
#include "tests/windows-kit/process.h"
#include "tests/windows-kit/product.h"
#include "tests/windows-kit/security.h"
#include "tests/windows-kit/system.h"
#include "tests/windows-kit/text.h"

#include <functional>

// Products that unpack fast, and products that keep what they have unpacked. make-kit.sh makes them.
namespace kit {

namespace {

constexpr const char *noProduct = "this kit has no such product";
constexpr const char *onlyElevated = "this process has administrator's rights: nothing is kept";

// Under Wine every process has them; such rows run there nevertheless.
bool isKeptNever()
{
    return isElevated() && wineVersion().empty();
}

// While it lives, the user's local data of everything that the row starts are in the row's folder.
class LocalData
{
public:
    explicit LocalData(const Place &place) : m_before(variable(L"LOCALAPPDATA"))
    {
        const std::wstring folder = place.path(L"local");
        m_isThere = makeFolder(folder) && SetEnvironmentVariableW(L"LOCALAPPDATA", folder.c_str());
    }
    LocalData(const LocalData &) = delete;
    LocalData &operator=(const LocalData &) = delete;
    ~LocalData() { SetEnvironmentVariableW(L"LOCALAPPDATA", m_before.c_str()); }

    bool isThere() const { return m_isThere; }

private:
    std::wstring m_before;
    bool m_isThere = false;
};

// One start of a product with the probe, and what the probe saw.
struct Started
{
    Ended ended;
    std::wstring folder; // the application's
    bool hasData = false;

    bool isRight() const { return ended.isByItself && ended.exitCode == 5 && hasData; }
    bool isKept() const { return folder.find(L"\\local\\Kestrelpack\\") != std::wstring::npos; }
    std::string text() const { return ended.text() + ", in " + utf8(folder); }
};

Started startOf(const Place &place, const std::wstring &product)
{
    const ProbeControl probe(place);
    DeleteFileW(probe.path().c_str());
    Started started;
    started.ended = run(Start(product, L"--exit=5"), place.folder);
    const Notes notes = probe.notes();
    started.folder = wide(notes["dir"]);
    started.hasData = notes["data"] == dataLine;
    return started;
}

// Runs a line of cmd. Returns whether it ended with 0.
bool runInCmd(const Place &place, const std::wstring &line)
{
    const Ended ended
        = run(Start(systemProgram(L"cmd.exe"), L"/d /s /c \"" + line + L'"'), place.temp);
    return ended.isByItself && ended.exitCode == 0;
}

// Of three starts.
std::string timesOf(const Place &place, const std::wstring &product, Check &check)
{
    std::string times;
    for (int i = 0; i < 3; ++i) {
        const Started started = startOf(place, product);
        check.that(started.isRight(), started.text());
        times += (times.empty() ? "" : ", ") + std::to_string(started.ended.milliseconds);
    }
    return times + " ms";
}

bool isLink(const std::wstring &path)
{
    const DWORD attributes = GetFileAttributesW(extended(path).c_str());
    return attributes != INVALID_FILE_ATTRIBUTES
        && (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
}

// What a link in a kept folder leads to.
struct Target
{
    std::wstring link;  // the path in the application's folder, which becomes a link
    std::wstring file;  // a file of the user's own, in the target or the target itself
    std::wstring make;  // cmd's line that makes the link
    std::string wanted; // the content that the product has at `checked`
    std::wstring checked;
};

// A start puts a file or folder in the place of the link, and leaves its target as it is.
Result linkIsReplaced(const Place &place, const std::wstring &product, const Target &target)
{
    const std::string own = "the user's own";
    Check check;
    const bool isRemoved = runInCmd(place, L"rmdir /s /q \"" + target.link + L"\"")
        || DeleteFileW(target.link.c_str());
    if (!check.that(isRemoved && writeFile(target.file, own), "the link cannot be prepared")) {
        return check.result();
    }
    if (!runInCmd(place, target.make) || !isLink(target.link)) {
        return notJudged("Windows makes no such link for this user");
    }
    const Started next = startOf(place, product);
    check.that(next.isRight() && next.isKept(), next.text());
    check.that(!isLink(target.link), "the link is still there");
    check.that(readFile(target.checked) == target.wanted, "the product's file is not there again");
    check.that(readFile(target.file) == own, "the target of the link has changed");
    return check.result();
}

// What a row needs after the first start of the product.
struct Kept
{
    std::wstring product;
    std::wstring folder; // the application's
};

// Makes the first start of kept.exe in a profile of the row's own. Then runs `row`, unless that start
// says nothing here or has failed.
Result afterFirstStart(const Place &place, const std::function<Result(const Kept &)> &row)
{
    const LocalData local(place);
    const std::wstring product = place.product(L"kept.exe");
    if (!exists(product)) {
        return notJudged(noProduct);
    }
    if (isKeptNever()) {
        return notJudged(onlyElevated);
    }
    if (!local.isThere()) {
        return fail("the row's own profile cannot be made");
    }
    const Started first = startOf(place, product);
    return first.isRight() && first.isKept() ? row({product, first.folder})
                                             : fail("the first start: " + first.text());
}

} // namespace

Result fastStart(const Place &place)
{
    const std::wstring product = place.product(L"fast.exe");
    return exists(product) ? runsAndLeavesNothing(place, product) : notJudged(noProduct);
}

Result timeOfFastStarts(const Place &place)
{
    const std::wstring product = place.product(L"many.exe");
    if (!exists(product)) {
        return notJudged(noProduct);
    }
    Check check;
    check.note("three starts: " + timesOf(place, product, check));
    check.that(leftovers(place).empty(), "it left its folder");
    return check.result();
}

Result keptSecondStart(const Place &place)
{
    return afterFirstStart(place, [&place](const Kept &kept) {
        const Started second = startOf(place, kept.product);
        Check check;
        check.that(second.isRight(), second.text());
        check.that(second.folder == kept.folder, "the second start ran in " + utf8(second.folder));
        check.that(exists(kept.folder + L"\\data.txt"),
                   "the folder is gone after the second start");
        check.that(leftovers(place).empty(), "a private folder is left");
        return check.result();
    });
}

Result keptJunction(const Place &place)
{
    return afterFirstStart(place, [&place](const Kept &kept) {
        const std::wstring link = kept.folder + L"\\folder";
        const std::wstring target = place.path(L"target");
        makeFolder(target);
        return linkIsReplaced(place, kept.product,
                              {link, target + L"\\inner.txt",
                               L"mklink /j \"" + link + L"\" \"" + target + L"\"",
                               "a file in a folder\r\n", link + L"\\inner.txt"});
    });
}

Result keptSymbolicLink(const Place &place)
{
    return afterFirstStart(place, [&place](const Kept &kept) {
        const std::wstring link = kept.folder + L"\\data.txt";
        const std::wstring target = place.path(L"target.txt");
        return linkIsReplaced(place, kept.product,
                              {link, target, L"mklink \"" + link + L"\" \"" + target + L"\"",
                               dataLine + "\r\n", link});
    });
}

Result keptElevated(const Place &place)
{
    const LocalData local(place);
    const std::wstring product = place.product(L"kept.exe");
    if (!exists(product)) {
        return notJudged(noProduct);
    }
    if (!isElevated()) {
        return notJudged("only a process with administrator's rights shows it");
    }
    const Started started = startOf(place, product);
    Check check;
    check.that(local.isThere() && started.isRight(), started.text());
    check.that(!started.isKept(), "the program ran in the kept folder " + utf8(started.folder));
    check.that(!exists(place.path(L"local\\Kestrelpack")), "a kept folder was made");
    check.that(leftovers(place).empty(), "it left its folder");
    return check.result();
}

Result timeOfKeptStarts(const Place &place)
{
    const LocalData local(place);
    const std::wstring product = place.product(L"manykept.exe");
    if (!exists(product)) {
        return notJudged(noProduct);
    }
    if (isKeptNever()) {
        return notJudged(onlyElevated);
    }
    Check check;
    const Started first = startOf(place, product);
    check.that(first.isRight(), first.text());
    const std::string later = timesOf(place, product, check);
    const std::string alone
        = first.isKept() ? timesOf(place, first.folder + L"\\manykept.exe", check) : "not kept";
    check.note("the first start: " + std::to_string(first.ended.milliseconds)
               + " ms; later ones: " + later + "; the kept program alone: " + alone);
    return check.result();
}

} // namespace kit
