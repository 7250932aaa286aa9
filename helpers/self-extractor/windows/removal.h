// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/text.h"
#include "helpers/self-extractor/windows/win32.h"

#include <cstdint>

namespace sfx {

/// Removes a folder with everything in it; `path` is in extended form (`\\?\...`). Links are
/// removed and never followed. What another process holds open (a scanner, a program that is just
/// ending) is tried again with growing pauses for about five seconds. False: something is left.
bool removeTree(const Text &path);

/// The same in one go, until `deadline` (of GetTickCount64) at most, and only if the folder has the
/// same owner as the file `mine`. False: something is left.
bool removeOwnTree(const Text &path, HANDLE mine, std::uint64_t deadline);

} // namespace sfx
