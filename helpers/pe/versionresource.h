// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/pe/resourcetree.h"
#include "helpers/pe/versioninfo.h"

#include <vector>

namespace pe {

// One version resource of a program. Windows shows the one with the id 1, in the user's language if
// there are several.
struct VersionResource
{
    ResourceKey name;
    std::uint16_t language = 0;
    VersionInfo info;
    bool operator==(const VersionResource &) const = default;
};

// All version resources of a program together may have this many bytes.
constexpr std::uint32_t maxVersionSizes = 1U << 20;

// Reads all version resources of a program, in the order of the directory; none if it has none. Fails
// with Damaged if one of them cannot be read, or if they exceed maxVersionSizes.
Result<std::vector<VersionResource>> versionResourcesOf(const File &file, const PeHeaders &headers);

// The strings of the first version resource's first table. Without one there are no strings.
Result<std::vector<VersionString>> versionStringsOf(const File &file, const PeHeaders &headers);

} // namespace pe
