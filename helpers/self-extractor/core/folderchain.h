// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/core/folderplan.h"
#include "helpers/self-extractor/core/parts.h"
#include "helpers/self-extractor/core/stream.h"

namespace sfx {

/// Builds the stages that decode one folder. Unsupported: a method or a wiring that this module does
/// not have.
Status openFolder(const FolderPlan &plan, Owned<Stream> &result);

/// As before, for one part of an archive; of a FilteredBlock, only what comes before the filter.
/// `readsAhead`: the costliest stage runs in a thread of its own.
Status openPart(const Archive &archive, const Part &part, bool readsAhead, Owned<Stream> &result);

} // namespace sfx
