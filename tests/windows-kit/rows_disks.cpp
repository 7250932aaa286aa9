// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/windows-kit/rows.h"

#include "tests/windows-kit/fatdisk.h"
#include "tests/windows-kit/files.h"
#include "tests/windows-kit/process.h"
#include "tests/windows-kit/product.h"
#include "tests/windows-kit/text.h"

#include <winioctl.h>

namespace kit {

namespace {

// docs/self-extractor.md, "Exit codes"
constexpr std::uint32_t cannotBeWritten = 0x4b5000cf;

// A file of zeros that takes no space.
bool makeSparseFile(const std::wstring &path, std::uint64_t size)
{
    const HANDLE file
        = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        return false;
    }
    DWORD returned = 0;
    FILE_END_OF_FILE_INFO end = {};
    end.EndOfFile.QuadPart = static_cast<LONGLONG>(size);
    const bool made
        = DeviceIoControl(file, FSCTL_SET_SPARSE, nullptr, 0, nullptr, 0, &returned, nullptr)
        && SetFileInformationByHandle(file, FileEndOfFileInfo, &end, sizeof end);
    CloseHandle(file);
    return made;
}

} // namespace

Result otherDrive(const Place &place)
{
    if (place.drive.empty()) {
        return notJudged("no --drive FOLDER was given (a USB stick or a network share)");
    }
    const std::wstring folder = place.drive + L"\\kestrelpack-kit";
    const std::wstring product = folder + L"\\product.exe";
    if (!makeFolder(folder) || !copyFile(placeProduct(place), product)) {
        return fail("cannot write to " + utf8(place.drive));
    }
    wchar_t root[MAX_PATH] = L"";
    GetVolumePathNameW(folder.c_str(), root, MAX_PATH);
    Result result = runsAndLeavesNothing(place, product);
    result.reason += " [drive type " + std::to_string(GetDriveTypeW(root)) + "]";
    removeFolder(folder);
    return result;
}

Result fatDisk(const Place &place)
{
    const FatDisk disk(place);
    if (!disk.problem().empty()) {
        return notJudged(disk.problem());
    }
    const std::wstring product = disk.path(L"product.exe");
    Place inner = place;
    if (!moveTemp(inner, disk.path(L"temp")) || !copyFile(placeProduct(place), product)) {
        return fail("the disk cannot be written: " + systemText(GetLastError()));
    }
    return runsAndLeavesNothing(inner, product);
}

Result fatDiskLargeFile(const Place &place)
{
    constexpr std::uint64_t size = 0x100000000 + 1000000;
    const FatDisk disk(place);
    if (!disk.problem().empty()) {
        return notJudged(disk.problem());
    }
    const std::wstring archive = place.path(L"large.7z");
    const std::wstring product = place.path(L"product.exe");
    if (!makeSparseFile(place.path(L"large.bin"), size)
        || !copyFile(place.file(L"kit-probe.exe"), place.path(L"kit-probe.exe"))) {
        return notJudged("the large file cannot be made: " + systemText(GetLastError()));
    }
    Start packing(place.file(L"7zr.exe"), L"a -mx=1 large.7z large.bin kit-probe.exe");
    packing.folder = place.folder;
    const Ended packed = run(packing, place.temp);
    if (!packed.isByItself || packed.exitCode != 0
        || !writeProduct(place, product, L"kit-probe.exe", readFile(archive))) {
        return notJudged("the product cannot be made: " + packed.text());
    }
    Place inner = place;
    moveTemp(inner, disk.path(L"temp"));
    const Ended ended = run(Start(product, L"--exit=5"), place.folder);
    Check check;
    check.that(ended.isByItself && ended.exitCode == cannotBeWritten, ended.text());
    check.that(contains(ended.errors, "large.bin"),
               "does not name the file: " + oneLine(ended.errors));
    check.that(leftovers(inner).empty(), "it left its folder");
    return check.result();
}

} // namespace kit
