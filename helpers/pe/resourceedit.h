// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/pe/icofile.h"
#include "helpers/pe/resourcetree.h"

#include <filesystem>
#include <functional>

namespace pe {

// How an edit reached the file.
enum class EditOutcome {
    Unchanged, // there was nothing to do; the file was not written to
    InPlace,   // a few bytes of the file were written over
    Rewritten, // a new file took the name
};

// Changes a program's resource tree; true when it did change something.
using TreeChange
    = std::function<Result<bool>(ResourceTree &tree, const File &file, const PeHeaders &headers)>;

// Applies the change to the PE32 or PE32+ file `open` and gives the result the name `save`, which
// may be `open` itself. What the change does not concern keeps its bytes, above all data appended
// behind the image, of any length; memory use does not depend on the file's size.
//
// However the process ends, `save` names the old file or the new one (see EditPlan::inPlace and
// Replacement). After a kill in the middle of an edit in place the CheckSum field may not fit the
// resources; only drivers are loaded by it.
//
// CheckSum: 0 means that the file has none, and stays. In a file of up to 64 MiB any other value
// becomes the right one for the whole file, appended data included. A larger file is not read for
// it: a value that can be right for the file's length is taken to be right and follows the changed
// bytes; one that cannot (data were appended to a linked program) becomes 0.
Result<EditOutcome> editResources(const std::filesystem::path &open,
                                  const std::filesystem::path &save, const TreeChange &change);

} // namespace pe
