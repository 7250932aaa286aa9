// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/pe/icofile.h"
#include "helpers/pe/resourcetree.h"

#include <functional>

namespace pe {

enum class EditOutcome {
    Unchanged, // there was nothing to change: the file keeps its bytes
    Changed,   // a new file has taken the name
};

// Changes a program's resource tree. Returns false if the tree stays as it is. It may also set fields
// of the headers that say nothing about places: machine, subsystem, time stamp.
using TreeChange
    = std::function<Result<bool>(ResourceTree &tree, const File &file, PeHeaders &headers)>;

// Applies the change to the PE32 or PE32+ file `open` and gives the result the name `save`, which may
// be `open` itself. Everything else in the file keeps its bytes, above all data appended to the
// image, of any length. Memory use does not depend on the file's size. However the process ends, `save`
// names the old file or the complete new one.
//
// The checksum in the header of a changed file becomes 0, "none": Windows checks it for drivers only.
Result<EditOutcome> editResources(const NativePath &open, const NativePath &save,
                                  const TreeChange &change);

} // namespace pe
