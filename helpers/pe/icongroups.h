// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/pe/icofile.h"
#include "helpers/pe/resourcetree.h"

#include <vector>

namespace pe {

// Removes every icon group and the images that the groups refer to. Other images stay. Returns false, and
// changes nothing, if there is no group.
bool removeIconGroups(ResourceTree &tree, const File &file, const PeHeaders &headers);

// Adds an icon group with these images under `key`, in the neutral language. It replaces a group of that
// key in all its languages; images that only the replaced group used are removed. New images get the
// lowest free ids. Fails if there are not enough free ids.
Result<Done> setIconGroup(ResourceTree &tree, const File &file, const PeHeaders &headers,
                          const ResourceKey &key, const std::vector<IconImage> &images);

} // namespace pe
