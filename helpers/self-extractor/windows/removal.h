// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/text.h"
#include "helpers/self-extractor/windows/win32.h"

#include <cstdint>

namespace sfx {

// Removes a folder with everything in it; `path` is in extended form (`\\?\...`). Links are removed
// and never followed. If something is in use by another process (a scanner, a program that is just
// ending), it tries again for about five seconds, with growing pauses. Returns false if something
// is left.
bool removeTree(const Text &path);

// The same with one try, at most until `deadline` (in GetTickCount64's time), and only if the
// folder has the same owner as the file `mine`. Returns false if something is left.
bool removeOwnTree(const Text &path, HANDLE mine, std::uint64_t deadline);

} // namespace sfx
