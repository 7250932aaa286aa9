// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/text.h"
#include "helpers/self-extractor/windows/win32.h"

namespace sfx {

/// Removes what starts of this user left in the temporary folder when they were killed, or what was
/// locked when they ended: folders with a private folder's name whose lock file is there and held
/// by nobody. `mine` is a file that this process has made in there: others may write to the folder
/// too, and only what has the same owner is ours. Takes half a second and removes 16 of them at
/// most; the next start goes on.
void removeStaleFolders(const Text &temporaryFolder, HANDLE mine);

} // namespace sfx
