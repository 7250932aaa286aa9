// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/pe/bytes.h"
#include "helpers/pe/result.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// The content of a version resource. Layout: Microsoft, VS_VERSIONINFO and the structures inside it.
namespace pe {

// One row of a table, as Explorer shows them: "FileDescription", "My application".
struct VersionString
{
    std::u16string name;
    std::u16string value;
    bool operator==(const VersionString &) const = default;
};

// The strings of one language. The key has eight hexadecimal digits: language and code page.
struct VersionTable
{
    std::u16string key;
    std::vector<VersionString> strings;
    bool operator==(const VersionTable &) const = default;
};

// The first number is the most significant: {1, 2, 3, 4} is "1.2.3.4".
using VersionNumber = std::array<std::uint16_t, 4>;

// VS_FIXEDFILEINFO. The values are those of an application for Windows.
struct FixedVersion
{
    std::uint32_t structVersion = 0x10000;
    VersionNumber file{};
    VersionNumber product{};
    std::uint32_t flagsMask = 0x3f;
    std::uint32_t flags = 0;
    std::uint32_t system = 0x40004; // VOS_NT_WINDOWS32
    std::uint32_t type = 1;         // VFT_APP
    std::uint32_t subtype = 0;
    VersionNumber date{}; // 64 bits, hardly ever set
    bool operator==(const FixedVersion &) const = default;
};

// One row of VarFileInfo's "Translation": a table that the resource contains.
struct VersionTranslation
{
    std::uint16_t language = 0;
    std::uint16_t codePage = 0;
    bool operator==(const VersionTranslation &) const = default;
};

struct VersionInfo
{
    std::optional<FixedVersion> fixed;
    std::vector<VersionTable> tables;
    std::vector<VersionTranslation> translations;
    bool operator==(const VersionInfo &) const = default;
};

// No version resource can be larger: its length has 16 bits.
constexpr std::uint32_t maxVersionSize = 0xffff;

// Reads a version resource. A string ends at its first NUL. Structures that VersionInfo has no place for
// are left out. Fails with Damaged if the structures contradict their lengths.
Result<VersionInfo> readVersionInfo(ByteView resource);

// The content of a version resource, as Microsoft's resource compiler would write it. Fails with NoRoom
// if it is larger than maxVersionSize.
Result<Bytes> writeVersionInfo(const VersionInfo &info);

// Sets a string in all tables; adds it where it is missing. Without any table a new one is made, of no
// language. Case does not matter in names.
void setVersionString(VersionInfo &info, const std::u16string &name, const std::u16string &value);
// Removes a string from all tables.
void removeVersionString(VersionInfo &info, const std::u16string &name);

// Reads "1.2.3.4": one to four numbers up to 65535, and nothing else. Missing numbers are 0.
std::optional<VersionNumber> versionNumberOf(std::u16string_view text);

} // namespace pe
