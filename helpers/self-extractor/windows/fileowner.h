// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/windows/win32.h"

namespace sfx {

/// Whether two files or folders have one owner; the handles need READ_CONTROL. Compared with a file
/// that this process has just made, it tells what a process with the same rights has made: with an
/// administrator's rights the owner is the group of these, so such a process does not take for its
/// own what one with fewer rights has prepared. File systems without owners say "everyone".
bool haveSameOwner(HANDLE one, HANDLE other);

} // namespace sfx
