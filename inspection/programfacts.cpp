// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "inspection/programfacts.h"

#include "helpers/pe/programheader.h"
#include "helpers/pe/versionresource.h"
#include "platform/nativepath.h"

#include <QFile>
#include <QTemporaryDir>

#include <algorithm>

namespace {

bool isSigned(const pe::File &file, const pe::PeHeaders &headers)
{
    const pe::DataDirectory signature = headers.directory(pe::Directory::Security);
    return signature.size != 0 && pe::fits(signature.address, signature.size, file.size());
}

// The sections with code and data. Editing changes resources and the subsystem only.
std::vector<pe::Section> fixedSections(const pe::PeHeaders &headers)
{
    std::vector<pe::Section> sections = headers.sections();
    std::erase_if(sections, [](const pe::Section &section) { return section.name == ".rsrc"; });
    return sections;
}

bool haveSameContent(const pe::File &left, const pe::Section &leftSection, const pe::File &right,
                     const pe::Section &rightSection)
{
    if (leftSection.name != rightSection.name
        || leftSection.virtualAddress != rightSection.virtualAddress
        || leftSection.virtualSize != rightSection.virtualSize
        || leftSection.rawSize != rightSection.rawSize
        || leftSection.characteristics != rightSection.characteristics) {
        return false;
    }
    if (!leftSection.hasRawData() || !rightSection.hasRawData()) {
        return leftSection.hasRawData() == rightSection.hasRawData();
    }
    const auto first = left.readAt(leftSection.rawPointer, std::size_t{leftSection.rawSize});
    const auto second = right.readAt(rightSection.rawPointer, std::size_t{rightSection.rawSize});
    return !first.hasError() && !second.hasError() && first.value() == second.value();
}

bool isBuiltLike(const pe::File &file, const pe::PeHeaders &headers, const pe::File &module)
{
    const auto moduleHeaders = pe::PeHeaders::read(module);
    if (moduleHeaders.hasError() || headers.entryPoint() != moduleHeaders.value().entryPoint()
        || headers.machine() != moduleHeaders.value().machine()) {
        return false;
    }
    const std::vector<pe::Section> sections = fixedSections(headers);
    const std::vector<pe::Section> expected = fixedSections(moduleHeaders.value());
    return sections.size() == expected.size()
        && std::equal(sections.begin(), sections.end(), expected.begin(),
                      [&](const pe::Section &left, const pe::Section &right) {
                          return haveSameContent(file, left, module, right);
                      });
}

// The module of the bundle, compared through a file, because that is what the reader takes. Not a
// QTemporaryFile: it stays open, and on Windows the reader could not open it a second time.
bool hasOwnModule(const pe::File &file, const pe::PeHeaders &headers)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath("module");
    if (!folder.isValid() || !QFile::copy(":/resources/7zS2.sfx", path)) {
        return false;
    }
    // A copy of a resource is read-only, and Windows does not remove such files.
    QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner);
    const auto module = pe::File::open(toNativePath(path), pe::File::Access::Read);
    return !module.hasError() && isBuiltLike(file, headers, module.value());
}

} // namespace

std::optional<ProgramFacts> programFactsOf(const pe::File &file)
{
    const auto read = pe::PeHeaders::read(file);
    if (read.hasError()) {
        return std::nullopt;
    }
    const pe::PeHeaders &headers = read.value();
    ProgramFacts facts;
    facts.machine = QString::fromStdString(pe::machineName(headers.machine()));
    facts.subsystem = QString::fromStdString(pe::subsystemName(headers.subsystem()));
    facts.isSigned = isSigned(file, headers);
    facts.hasOwnModule = hasOwnModule(file, headers);
    const auto strings = pe::versionStringsOf(file, headers);
    if (!strings.hasError()) {
        for (const pe::VersionString &string : strings.value()) {
            facts.identity.append(
                {QString::fromStdU16String(string.name), QString::fromStdU16String(string.value)});
        }
    }
    return facts;
}
