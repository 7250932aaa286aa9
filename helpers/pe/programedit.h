// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/pe/resourceedit.h"

#include <optional>
#include <vector>

namespace pe {

// One resource to put into a program or to remove from it. A key is an id or a name
// (resourcetree.h); names are stored in capitals. The language is a LANGID; 0 is neutral.
struct ResourceEdit
{
    ResourceKey type;
    ResourceKey name;
    std::uint16_t language = 0;
    std::optional<Bytes> content; // nothing: the resource is removed, if it is there
};

// What changes in a program, in this order.
struct ProgramEdit
{
    std::optional<std::uint16_t> subsystem = {}; // for the header, IMAGE_SUBSYSTEM_...
    std::vector<ResourceKey> removedTypes = {};  // all resources of these types are removed
    std::vector<ResourceEdit> resources = {}; // replace those of the same type, name and language
};

// Applies the edit to the program `open` and gives the result the name `save`, which may be `open`
// itself; see editResources(). Everything else in the program keeps its bytes. If nothing changes,
// the file keeps all its bytes, and with them its check sum.
Result<EditOutcome> editProgram(const NativePath &open, const NativePath &save,
                                const ProgramEdit &edit);

} // namespace pe
