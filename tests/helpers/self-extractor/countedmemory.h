// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>

// Counts the module's memory. A program that links this file uses it instead of the core's own.
// Several threads may allocate and free blocks.
namespace countedmemory {

constexpr std::size_t unlimited = static_cast<std::size_t>(-1);

// Starts counting again; memory in use now is included. Refuses to go above `limit` bytes in use,
// and refuses block number `failing` (the first block is 1; 0 refuses none).
void reset(std::size_t limit = unlimited, unsigned failing = 0);
// The largest number of bytes in use at one time since reset().
std::size_t peak();
// Bytes in use, including those from before reset().
std::size_t inUse();
// The largest single request in bytes since reset(), even if it was refused.
std::size_t largestRequest();
// The bytes of all requests since reset(), whether they were released or not.
std::size_t total();

} // namespace countedmemory
