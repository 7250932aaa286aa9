// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/text.h"
#include "helpers/self-extractor/windows/win32.h"

#include <cstdint>

namespace sfx {

/// Whether this is what the system says when a disk, or the user's share of it, is full.
bool isDiskFull(DWORD error);

/// How many of the bytes that are needed on the folder's disk are not free there for the user; 0
/// too where the system does not tell, as for some network drives.
std::uint64_t missingSpace(const Text &folder, std::uint64_t needed);

} // namespace sfx
