// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/fast-archiver/solidblocks.h"

#include <cstddef>

namespace fast {

// The settings of libzstd for one block. README.md tells how they were chosen.
struct FramePlan
{
    int level = 0;
    unsigned windowLog = 0;
    int minMatch = 0;     // 0: as the level says
    int chainLog = 0;     // the same
    int searchLog = 0;    // the same
    int targetLength = 0; // the same; in bytes
    // If not 0, the frame is made of parts of this size, which several threads pack at the same
    // time.
    std::size_t partSize = 0;
};

// Depends on nothing but the arguments, so that the archive is the same on every machine.
FramePlan framePlanFor(const SolidBlock &block, const PackOptions &options);

// About how many bytes a thread needs that packs by this plan.
std::uint64_t memoryFor(const FramePlan &plan);

} // namespace fast
