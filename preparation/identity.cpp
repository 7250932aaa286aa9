// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "preparation/identity.h"

#include "preparation/controlcharacters.h"

#include <algorithm>

namespace {

// VS_FIXEDFILEINFO, dwFileFlags: the resource has the string of that name.
constexpr std::uint32_t privateBuildFlag = 0x8;
constexpr std::uint32_t specialBuildFlag = 0x20;

// The name as Windows writes it; empty if it is not known.
QString properName(const QString &name)
{
    const QStringList names = identityFieldNames();
    const auto found = std::find_if(names.begin(), names.end(), [&](const QString &known) {
        return known.compare(name, Qt::CaseInsensitive) == 0;
    });
    return found == names.end() ? QString() : *found;
}

bool isVersionField(const QString &name)
{
    return name == "FileVersion" || name == "ProductVersion";
}

std::optional<Message> reasonToRefuse(const QString &name, const QString &text)
{
    if (text.size() > maxIdentityText) {
        return Message{"the text of %1 has %2 characters; at most %3 are possible",
                       {name, QString::number(text.size()), QString::number(maxIdentityText)}};
    }
    if (!isCleanText(text)) {
        return Message{"the text of %1 contains a line end or another control character", {name}};
    }
    if (isVersionField(name) && !pe::versionNumberOf(text.toStdU16String())) {
        return Message{"\"%1\" is no version: %2 takes one to four numbers from 0 to 65535 with "
                       "dots between them",
                       {text, name}};
    }
    return std::nullopt;
}

void setFlag(pe::FixedVersion &fixed, std::uint32_t flag, bool isSet)
{
    fixed.flagsMask |= flag;
    fixed.flags = isSet ? fixed.flags | flag : fixed.flags & ~flag;
}

// The fixed part has the versions as numbers, and flags for two rare strings.
void setFixedPart(pe::FixedVersion &fixed, const QString &name, const QString &text)
{
    const auto number = pe::versionNumberOf(text.toStdU16String()).value_or(pe::VersionNumber());
    if (name == "FileVersion") {
        fixed.file = number;
    } else if (name == "ProductVersion") {
        fixed.product = number;
    } else if (name == "PrivateBuild") {
        setFlag(fixed, privateBuildFlag, !text.isEmpty());
    } else if (name == "SpecialBuild") {
        setFlag(fixed, specialBuildFlag, !text.isEmpty());
    }
}

void setField(pe::VersionInfo &info, const QString &name, const QString &text)
{
    pe::FixedVersion fixed = info.fixed.value_or(pe::FixedVersion());
    setFixedPart(fixed, name, text);
    if (info.fixed || fixed != pe::FixedVersion()) {
        info.fixed = fixed;
    }
    if (text.isEmpty()) {
        pe::removeVersionString(info, name.toStdU16String());
    } else {
        pe::setVersionString(info, name.toStdU16String(), text.toStdU16String());
    }
}

pe::VersionResource newResource(const QString &productName)
{
    pe::VersionResource resource;
    resource.name.id = 1;
    resource.info.fixed.emplace();
    setField(resource.info, "InternalName", productName.section(u'.', 0, -2));
    return resource;
}

// A string of a table, shortened to the length that a field may have; empty if it is missing.
QString stringOf(const pe::VersionTable &table, const char16_t *name)
{
    for (const pe::VersionString &string : table.strings) {
        const QString value = QString::fromStdU16String(string.value).left(maxIdentityText);
        if (string.name == name && isCleanText(value)) {
            return value.trimmed();
        }
    }
    return {};
}

} // namespace

QStringList identityFieldNames()
{
    return {"Comments",     "CompanyName",    "FileDescription", "FileVersion",
            "InternalName", "LegalCopyright", "LegalTrademarks", "OriginalFilename",
            "PrivateBuild", "ProductName",    "ProductVersion",  "SpecialBuild"};
}

std::optional<Message> reasonToRefuse(const QList<IdentityField> &fields)
{
    QStringList names;
    for (const auto &[given, text] : fields) {
        const QString name = properName(given);
        if (name.isEmpty()) {
            return Message{"there is no field \"%1\"; the fields are %2",
                           {given, identityFieldNames().join(", ")}};
        }
        if (names.contains(name)) {
            return Message{"the field %1 is set twice", {name}};
        }
        names.append(name);
        if (auto reason = reasonToRefuse(name, text)) {
            return reason;
        }
    }
    return std::nullopt;
}

std::variant<std::vector<pe::VersionResource>, Message>
identityOf(const std::vector<pe::VersionResource> &mainProgram, const QString &productName,
           const QList<IdentityField> &fields)
{
    if (const auto reason = reasonToRefuse(fields)) {
        return *reason;
    }
    std::vector<pe::VersionResource> resources = mainProgram;
    if (resources.empty() && !fields.isEmpty()) {
        resources.push_back(newResource(productName));
    }
    for (pe::VersionResource &resource : resources) {
        setField(resource.info, "OriginalFilename", productName);
        for (const auto &[name, text] : fields) {
            setField(resource.info, properName(name), text);
        }
        if (pe::writeVersionInfo(resource.info).hasError()) {
            return Message{"the version information would be larger than 64 KiB", {}};
        }
    }
    return resources;
}

QString productOf(const std::vector<pe::VersionResource> &identity, const QString &mainProgram)
{
    if (identity.empty() || identity.front().info.tables.empty()) {
        return {};
    }
    const pe::VersionTable &table = identity.front().info.tables.front();
    const QString product = stringOf(table, u"ProductName");
    return product.isEmpty()
        ? QString()
        : stringOf(table, u"CompanyName") + " | " + product + " | " + mainProgram;
}
