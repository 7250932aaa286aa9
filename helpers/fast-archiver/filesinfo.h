// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/fast-archiver/headernumbers.h"
#include "helpers/fast-archiver/solidblocks.h"

namespace fast {

// Writes the part of a 7z header that has the names, times and attributes of all entries: first
// those that are in no block, then those of the blocks.
void writeFilesInfo(HeaderWriter &header, const std::vector<SourceFile> &files,
                    const std::vector<SolidBlock> &blocks);

} // namespace fast
