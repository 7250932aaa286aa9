// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/windows-kit/rows.h"

#include "tests/windows-kit/files.h"
#include "tests/windows-kit/process.h"
#include "tests/windows-kit/product.h"
#include "tests/windows-kit/text.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <thread>

namespace kit {

namespace {

constexpr std::uint64_t largeSize = 400'000'000; // as in scripts/build-windows

// 200 characters.
std::wstring longName()
{
    std::wstring name = L"a long name";
    while (name.size() < 200) {
        name += L" and more";
    }
    return name.substr(0, 200 - 1) + L'x';
}

} // namespace

Result cloudAttributes(const Place &place)
{
    std::vector<Entry> entries = probeEntries(place);
    for (Entry &entry : entries) {
        entry.attributes = 0x80420; // PINNED, REPARSE_POINT, ARCHIVE, as cloud folders set them
    }
    const std::wstring product = place.path(L"product.exe");
    if (!writeProduct(place, product, L"kit-probe.exe", entries)) {
        return fail("the product cannot be written");
    }
    const ProbeControl probe(place);
    const Ended ended = run(Start(product, L"--exit=5"), place.folder);
    Check check;
    check.that(ended.isByItself && ended.exitCode == 5, ended.text());
    const unsigned long attributes = std::strtoul(probe.notes()["attributes"].c_str(), nullptr, 16);
    check.that((attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0,
               "the program's file has attributes " + hex(attributes));
    return check.result();
}

Result largeFile(const Place &place)
{
    const std::wstring product = place.product(L"large.exe");
    if (!exists(product)) {
        return notJudged("this kit has no large product");
    }
    ULARGE_INTEGER space = {};
    GetDiskFreeSpaceExW(place.temp.c_str(), &space, nullptr, nullptr);
    if (space.QuadPart < 2 * largeSize) {
        return notJudged("the disk has less than 800 MB free");
    }
    ProbeControl probe(place);
    Process process;
    const ULONGLONG begin = GetTickCount64();
    if (!process.start(Start(product, L"--wait --exit=5"))) {
        return fail("cannot be started: " + systemText(process.error()));
    }
    const Notes notes = probe.waitForNotes(process);
    const ULONGLONG started = GetTickCount64();
    const std::uint64_t size = sizeOf(wide(notes["dir"]) + L"\\large.bin");
    probe.release();
    const ULONGLONG released = GetTickCount64();
    Check check;
    check.that(process.wait() && process.exitCode() == 5, "ended with " + hex(process.exitCode()));
    check.that(size == largeSize, "the file has " + std::to_string(size) + " bytes");
    check.that(leftovers(place).empty(), "it left its folder");
    check.note(std::to_string(started - begin) + " ms to the program's start, "
               + std::to_string(GetTickCount64() - released) + " ms to remove");
    return check.result();
}

namespace {

// Opens every file of the private folders for reading, again and again, as a scanner does.
void readEverything(const std::wstring &folder, std::atomic<unsigned> &opened)
{
    constexpr DWORD shareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    for (const std::wstring &name : namesIn(folder)) {
        const std::wstring path = folder + L'\\' + name;
        if ((GetFileAttributesW(path.c_str()) & FILE_ATTRIBUTE_DIRECTORY) != 0) {
            readEverything(path, opened);
            continue;
        }
        const HANDLE file
            = CreateFileW(path.c_str(), GENERIC_READ, shareAll, nullptr, OPEN_EXISTING, 0, nullptr);
        if (file != INVALID_HANDLE_VALUE) {
            ++opened;
            Sleep(1);
            CloseHandle(file);
        }
    }
}

} // namespace

// The files' sizes differ, so that some of them are written while they are looked at.
Result readersDuringUnpacking(const Place &place)
{
    std::vector<Entry> entries = probeEntries(place);
    for (int i = 0; i < 100; ++i) {
        entries.push_back({L"many/" + std::to_wstring(i) + L".bin",
                           std::string(static_cast<std::size_t>(1000 + 10000 * i), 'x')});
    }
    const std::wstring product = place.path(L"product.exe");
    if (!writeProduct(place, product, L"kit-probe.exe", entries)) {
        return fail("the product cannot be written");
    }
    std::atomic<bool> isDone = false;
    std::atomic<unsigned> opened = 0;
    std::thread scanner([&] {
        while (!isDone) {
            readEverything(place.temp, opened);
        }
    });
    Check check;
    for (int i = 0; i < 4; ++i) {
        const Ended ended = run(Start(product, L"--exit=5"), place.folder);
        check.that(ended.isByItself && ended.exitCode == 5, ended.text());
    }
    isDone = true;
    scanner.join();
    check.note("4 starts, " + std::to_string(opened) + " times a file was open");
    return check.result();
}

Result longPathOfProduct(const Place &place)
{
    const std::wstring folder = place.path(longName() + L'\\' + longName());
    if (!makeFolder(folder) || !copyFile(placeProduct(place), folder + L"\\product.exe")) {
        return notJudged("the folder cannot be made: " + systemText(GetLastError()));
    }
    return runsAndLeavesNothing(place, extended(folder) + L"\\product.exe");
}

Result longPathInProduct(const Place &place)
{
    std::vector<Entry> entries = probeEntries(place);
    entries.push_back({longName() + L'/' + longName() + L"/deep.txt", "deep\r\n"});
    const std::wstring product = place.path(L"product.exe");
    if (!writeProduct(place, product, L"kit-probe.exe", entries)) {
        return fail("the product cannot be written");
    }
    return runsAndLeavesNothing(place, product);
}

namespace {

// A path with `size` characters.
std::wstring longTemp(const Place &place, std::size_t size)
{
    std::wstring path = place.temp + L'\\';
    path.resize(std::max(size, path.size() + 1), L'x');
    return path;
}

Result inTemporaryFolderOf(const Place &place, std::size_t size)
{
    Place inner = place;
    return moveTemp(inner, longTemp(place, size))
        ? runsAndLeavesNothing(inner, placeProduct(place))
        : fail("the folder cannot be made: " + systemText(GetLastError()));
}

} // namespace

Result longTemporaryPath(const Place &place)
{
    return inTemporaryFolderOf(place, 205);
}

// The program's path is longer than 260 characters; its folder's is not, because no longer folder can
// be a process' working folder.
Result longProgramPath(const Place &place)
{
    return inTemporaryFolderOf(place, 225);
}

// The private folder's path is too long for a working folder then: the program gets its short name,
// or begins in the caller's.
Result veryLongTemporaryPath(const Place &place)
{
    Place inner = place;
    if (!moveTemp(inner, longTemp(place, 240))) {
        return fail("the folder cannot be made: " + systemText(GetLastError()));
    }
    const ProbeControl probe(place);
    const Ended ended = run(Start(placeProduct(place), L"--print=here --exit=5"), place.folder);
    const Notes notes = probe.notes();
    Check check;
    check.that(ended.isByItself && ended.exitCode == 5, ended.text());
    check.that(startsWith(ended.output, "here"), "its output is missing: " + ended.text());
    check.that(leftovers(inner).empty(), "it left its folder");
    check.note("the program began in " + notes["folder"]);
    return check.result();
}

// Windows gives "long name of a file.txt" the second name LONGNA~1.TXT. A file that has this name
// already must not be the same file.
Result shortNames(const Place &place)
{
    std::vector<Entry> entries = probeEntries(place);
    entries.push_back({L"long name of a file.txt", "long"});
    entries.push_back({L"LONGNA~1.TXT", "short"});
    const std::wstring product = place.path(L"product.exe");
    if (!writeProduct(place, product, L"kit-probe.exe", entries)) {
        return fail("the product cannot be written");
    }
    const ProbeControl probe(place);
    Process process;
    const bool started = process.start(Start(product, L"--wait"));
    const Notes notes = started ? probe.waitForNotes(process) : Notes();
    const std::wstring folder = wide(notes["dir"]);
    Check check;
    check.that(notes.isThere(), "the product did not start");
    const std::string contents = readFile(folder + L"\\long name of a file.txt") + ", "
        + readFile(folder + L"\\LONGNA~1.TXT");
    check.that(contents == "long, short", "the files hold: " + contents);
    return check.result();
}

Result namesBeyondAscii(const Place &place)
{
    Place inner = place;
    inner.folder = place.path(L"\u6e90 \u6587\u4ef6\u5939 \u00fcn\u00ef \U0001f985");
    if (!moveTemp(inner, inner.path(L"\u4e34\u65f6 \U0001f680"))) {
        return fail("the folder cannot be made: " + systemText(GetLastError()));
    }
    const std::wstring name = L"\u4e3b \u7a0b\u5e8f \U0001f680.exe";
    std::vector<Entry> entries = probeEntries(place);
    entries[0].name = name;
    const std::wstring product = inner.path(name);
    if (!writeProduct(place, product, name, entries)) {
        return fail("the product cannot be written");
    }
    return runsAndLeavesNothing(inner, product);
}

} // namespace kit
