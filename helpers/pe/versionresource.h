// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/pe/resourcetree.h"

#include <string>
#include <vector>

namespace pe {

// One row of a version resource, as Explorer shows them: "FileDescription", "My application".
struct VersionString
{
    std::u16string name;
    std::u16string value;
};

// Reads the strings of a version resource, of its first language only. Layout: Microsoft,
// VS_VERSIONINFO and the structures inside it. Fails with Damaged if the resource is not such a
// structure; a resource without strings gives none.
Result<std::vector<VersionString>> readVersionStrings(ByteView resource);

// The same for a program. Without a version resource there are no strings.
Result<std::vector<VersionString>> versionStringsOf(const File &file, const PeHeaders &headers);

} // namespace pe
