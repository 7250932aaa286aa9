// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/pe/icofile.h"
#include "helpers/pe/resourcetree.h"

#include <vector>

namespace pe {

// Takes every icon group out of the tree, with the images that the groups refer to. Images that no
// group refers to stay. False when there was no group; the tree is then as it was.
bool removeIconGroups(ResourceTree &tree, const File &file, const PeHeaders &headers);

// Puts one icon group of neutral language over these images under `key`, in place of all languages
// that were there, and takes out the images that only the replaced ones used. New images get the
// lowest ids that nothing uses. Fails when the ids run out.
Result<Done> setIconGroup(ResourceTree &tree, const File &file, const PeHeaders &headers,
                          const ResourceKey &key, const std::vector<IconImage> &images);

} // namespace pe
