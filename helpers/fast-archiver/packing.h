// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/fast-archiver/archiveheader.h"
#include "helpers/fast-archiver/blockreader.h"
#include "helpers/fast-archiver/orderedoutput.h"
#include "helpers/fast-archiver/packoptions.h"

namespace fast {

// Packs all blocks, several at the same time. Blocks in parts come first, one after the other.
// Returns the first failure.
Outcome<std::vector<PackedBlock>> packBlocks(const Source &source,
                                             const std::vector<SolidBlock> &blocks,
                                             const PackOptions &options, OrderedOutput &output,
                                             Progress &progress);

// How many threads pack: as many as wanted (0: as processors), but no more than there is work and
// memory for. Half of the machine's memory is used; 0 means that its size is unknown.
unsigned threadsFor(unsigned wanted, unsigned processors, std::size_t work, std::uint64_t memory,
                    std::uint64_t memoryForEach);

} // namespace fast
