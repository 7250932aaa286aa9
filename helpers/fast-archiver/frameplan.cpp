// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/fast-archiver/frameplan.h"

#include <algorithm>
#include <bit>

namespace fast {

namespace {

constexpr unsigned smallestWindowLog = 17;
constexpr std::size_t partSize = 16U << 20;
constexpr int overlap = 8; // half a window

// libzstd's optimal parser needs about as much beside its tables.
constexpr std::uint64_t otherMemory = 16U << 20;

} // namespace

FramePlan framePlanFor(const SolidBlock &block, const PackOptions &options)
{
    FramePlan plan;
    plan.level = options.level;
    plan.windowLog = std::clamp(static_cast<unsigned>(std::bit_width(block.size - 1)), smallestWindowLog,
                                options.windowLog);
    plan.chainLog = plan.windowLog;
    if (block.isLarge) {
        plan.partSize = partSize;
        plan.overlapLog = overlap;
    }
    return plan;
}

std::uint64_t memoryFor(const FramePlan &plan)
{
    const std::uint64_t window = std::uint64_t{1} << plan.windowLog;
    const std::uint64_t tables = std::uint64_t{8} << plan.chainLog;
    return window + tables + 2 * plan.partSize + otherMemory;
}

} // namespace fast
