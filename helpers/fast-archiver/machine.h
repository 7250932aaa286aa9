// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/pe/nativepath.h"

#include <atomic>
#include <cstdint>

namespace fast {

// The requests to the operating system beyond files.

// The number of processors that this process may use; at least 1.
unsigned processorCount();

// In bytes; 0 if it is unknown.
std::uint64_t physicalMemory();

// Makes Ctrl-C, and the signals that ask a process to end, set `stopped`. It must live as long as
// the process.
void stopWhenInterrupted(std::atomic<bool> &stopped);

void removeFile(const pe::NativePath &path);

} // namespace fast
