// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/text.h"
#include "helpers/self-extractor/windows/win32.h"

#include <cstdint>

namespace sfx {

// Whether this error means that the disk, or the user's share of it, is full.
bool isDiskFull(DWORD error);

// Whether the disk that an open file is on can hold a file of `size` bytes, however empty it is.
// Also true if the system does not know.
bool diskHoldsFileOf(HANDLE file, std::uint64_t size);

// How many of the `needed` bytes are not available to the user on the folder's disk. Also 0 if the
// system does not know, as for some network drives.
std::uint64_t missingSpace(const Text &folder, std::uint64_t needed);

} // namespace sfx
