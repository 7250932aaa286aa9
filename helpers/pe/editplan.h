// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/pe/peheaders.h"
#include "helpers/pe/resourcelayout.h"

#include <vector>

namespace pe {

// How the old file becomes the new one: `insertLength` zero bytes go in at `insertAt`, then the patches
// are written, then the headers. The patches' offsets are those of the new file.
struct EditPlan
{
    std::uint64_t insertAt = 0;
    std::uint64_t insertLength = 0;
    std::vector<Patch> patches;
    PeHeaders headers;
};

// Decides where a changed tree goes: into its own section, which grows if it must (a .reloc section
// after it then moves on), or else into a new section. A tree with rootRva 0 is new to the file. Moves
// new content out of the tree.
Result<EditPlan> planEdit(const File &file, const PeHeaders &headers, ResourceTree &tree);

} // namespace pe
