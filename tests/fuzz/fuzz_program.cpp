// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/pe/icongroups.h"
#include "helpers/pe/iconofprogram.h"
#include "helpers/pe/programheader.h"
#include "helpers/pe/resourceedit.h"
#include "helpers/pe/versionresource.h"
#include "tests/fuzz/programfile.h"
#include "tests/fuzz/require.h"
#include "tests/fuzz/untouchedbytes.h"

#include <algorithm>

using namespace pe;

namespace {

Bytes smallIcon()
{
    IconImage image;
    image.width = image.height = 1;
    image.bitCount = 32;
    Bytes bitmap(40 + 4 + 4, 0x55);
    write32(bitmap, 0, 40);
    write32(bitmap, 4, 1);
    write32(bitmap, 8, 2);
    write16(bitmap, 14, 32);
    image.data = bitmap;
    return icoFileOf({image});
}

// An edit of a file of unknown origin either leaves it alone or does what it says. Returns true if it
// changed the file.
bool checkEdit(ProgramFile &file, const TreeChange &change)
{
    const Bytes before = file.content();
    const auto looksBefore = ProgramLooks::of(file);
    const auto untouched = UntouchedBytes::of(File::open(file.path(), File::Access::Read).value());
    const auto outcome = editResources(file.path(), file.path(), change);
    const Bytes after = file.content();
    if (outcome.hasError()) {
        require(!outcome.error().what.empty(), "a refusal says why");
        require(after == before, "a program that cannot be edited stays as it is");
        return false;
    }
    if (outcome.value() == EditOutcome::Unchanged) {
        require(after == before, "nothing to do means nothing done");
        return false;
    }
    const auto looksAfter = ProgramLooks::of(file);
    require(looksBefore && looksAfter, "an edited program can be read");
    require(looksAfter->appended == looksBefore->appended, "appended data are kept");
    require(untouched && untouched->areIn(after), "no other bytes of the program change");
    // In a damaged file, a growing section can make content readable that was unreadable before.
    for (const auto &[path, content] : looksBefore->others) {
        const auto kept = looksAfter->others.find(path);
        require(!looksBefore->isSound
                    || (kept != looksAfter->others.end() && kept->second == content),
                "the other resources are kept");
    }
    return true;
}

} // namespace

void checkIconGroup(const ProgramFile &file)
{
    const auto icon = iconGroupOfProgram(file.path());
    if (!icon.hasError() && icon.value()) {
        require(icon.value()->size() <= maxIcoFileSize, "an icon file has a limit");
        require(!parseIcoFile(*icon.value()).hasError(), "an icon group gives an icon file");
    }
}

void checkVersions(const ProgramFile &file)
{
    const auto opened = File::open(file.path(), File::Access::Read);
    static_cast<void>(programHeaderOf(opened.value()));
    const auto headers = PeHeaders::read(opened.value());
    if (headers.hasError()) {
        return;
    }
    const auto versions = versionResourcesOf(opened.value(), headers.value());
    if (versions.hasError()) {
        return;
    }
    for (const VersionResource &version : versions.value()) {
        const auto written = writeVersionInfo(version.info);
        if (!written.hasError()) {
            const auto read = readVersionInfo(written.value());
            require(!read.hasError() && read.value() == version.info,
                    "version information that is written is read again");
        }
    }
}

// The input is a program, or any bytes. The fuzzer reads, removes and sets the icon, and reads the
// version information.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    ProgramFile file({data, size});
    const auto icon = iconOfProgram(file.path());
    if (!icon.hasError() && icon.value()) {
        const auto images = parseIcoFile(*icon.value());
        require(!images.hasError() && images.value().size() == 1,
                "a program's icon is an icon file with one image");
    }
    checkIconGroup(file);
    checkVersions(file);
    require(file.content() == Bytes(data, data + size), "reading changes nothing");

    checkEdit(file, [](ResourceTree &tree, const File &opened, const PeHeaders &headers) {
        return Result<bool>(removeIconGroups(tree, opened, headers));
    });
    const auto bare = ProgramLooks::of(file);
    static const Bytes newIcon = smallIcon();
    const auto images = parseIcoFile(newIcon);
    const bool isSet = checkEdit(
        file,
        [&](ResourceTree &tree, const File &opened, const PeHeaders &headers) -> Result<bool> {
            const auto set = setIconGroup(tree, opened, headers, {u"MAINICON", 0}, images.value());
            if (set.hasError()) {
                return set.error();
            }
            return true;
        });
    if (isSet && bare && !bare->hasGroup) {
        const auto shown = iconOfProgram(file.path());
        require(!shown.hasError() && shown.value() == newIcon, "the icon that was set is shown");
    }
    return 0;
}
