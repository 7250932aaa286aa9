// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>

// The module's memory, counted. A program that is linked with this file has it in place of the
// core's own; blocks may be asked for and given back by several threads.
namespace countedmemory {

constexpr std::size_t unlimited = static_cast<std::size_t>(-1);

// Begins to count anew, from what is in use now. More than `limit` bytes at a time are not given,
// nor is the `failing`th block (the first is 1; 0: none).
void reset(std::size_t limit = unlimited, unsigned failing = 0);
// The most bytes that were in use at a time since reset().
std::size_t peak();
// Bytes in use, those from before reset() included.
std::size_t inUse();
// The largest number of bytes that was asked for at once since reset(), given or not.
std::size_t largestRequest();

} // namespace countedmemory
