// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/pe/peheaders.h"
#include "helpers/pe/resourcelayout.h"

#include <vector>

namespace pe {

// What turns the old file into the new one: `insertLength` zero bytes go in at `insertAt`, then the
// patches are written. Offsets of patches are those of the new file.
struct EditPlan
{
    std::uint64_t insertAt = 0;
    std::uint64_t insertLength = 0;
    std::vector<Patch> content;
    Patch root;        // the root table
    PeHeaders headers; // as they are to be, but for the checksum

    // The patches may be written into the old file itself. Until `root` is written, a reader sees
    // the old resources: `content` touches only bytes that nothing refers to, and the root table
    // lies within one page, which the system writes as a whole even when the writer is killed.
    bool inPlace = false;
};

// The bytes of a file that a tree lives in, noted before the tree is changed.
struct OldPlace
{
    std::vector<ResourceRange> live; // in use, the root left out
    std::uint32_t rootSize = 0;

    static OldPlace of(const ResourceTree &tree);
};

// Decides where a changed tree goes. In this order: into bytes of its section that are not in use;
// into its section, all tables written anew, the section growing as needed (and a .reloc
// section behind it moving on); into a new section. A tree with rootRva 0 is new to the file. Takes
// the new content out of the tree.
Result<EditPlan> planEdit(const File &file, const PeHeaders &headers, ResourceTree &tree,
                          const OldPlace &old);

} // namespace pe
