// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/windows/win32.h"

namespace sfx {

// True if both have the same owner SID; the handles need READ_CONTROL. An elevated process owns its
// files as Administrators, so it does not trust files that an unelevated one created. File systems
// without owners report "everyone".
bool haveSameOwner(HANDLE one, HANDLE other);

// True if the owner of a file, whose handle has READ_CONTROL, is the user of this process.
bool belongsToUser(HANDLE file);

} // namespace sfx
