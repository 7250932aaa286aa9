// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/fast-archiver/frameplan.h"

#include <algorithm>
#include <bit>

namespace fast {

namespace {

constexpr unsigned smallestWindowLog = 17;
// A window of 8 MiB mostly stays in a processor's cache, so the block is unpacked faster, and with less
// memory. Similar files of a block lie beside each other, so they seldom repeat what is farther back.
// A large file often does.
constexpr unsigned usualWindowLog = 23;
constexpr unsigned largeFileWindowLog = 25;
constexpr std::size_t partSize = 16U << 20;

// The level's own values would be 5, 22, 5 and 48. So it also uses repetitions of three bytes,
// remembers more places, looks at fewer of them, and takes a repetition without looking for another
// way only if it is longer (README.md).
constexpr int usualLevel = 16;
constexpr int usualMinMatch = 3;
constexpr int usualChainLog = 24;
constexpr int usualSearchLog = 4;
constexpr int usualTargetLength = 96;

// What libzstd's optimal parser and its tables need beside the window.
constexpr std::uint64_t tablesMemory = 96U << 20;

} // namespace

FramePlan framePlanFor(const SolidBlock &block, const PackOptions &options)
{
    const unsigned chosen = block.isLarge ? largeFileWindowLog : usualWindowLog;
    FramePlan plan;
    plan.level = options.level;
    plan.windowLog = std::clamp(static_cast<unsigned>(std::bit_width(block.size - 1)),
                                smallestWindowLog,
                                options.windowLog != 0 ? options.windowLog : chosen);
    if (options.level == usualLevel) {
        plan.minMatch = usualMinMatch;
        plan.chainLog = usualChainLog;
        plan.searchLog = usualSearchLog;
        plan.targetLength = usualTargetLength;
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
