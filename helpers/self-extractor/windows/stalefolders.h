// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/text.h"
#include "helpers/self-extractor/windows/win32.h"

namespace sfx {

// Removes private folders that earlier starts of this user left in the temporary folder, because
// they were killed or because something was locked. These are folders with a private folder's name
// whose lock file exists and is not open. Only folders with the same owner as the file `mine` are
// removed, because other users may write to the temporary folder, too; this process has created
// that file there. Takes about half a second, plus the time to list one folder, and removes at most
// 16 folders; the next start continues.
void removeStaleFolders(const Text &temporaryFolder, HANDLE mine);

// The same for one folder, whose lock file has this path (in extended form). Returns true if there
// was one and it is gone.
bool removeStaleFolder(const Text &lockPath, HANDLE mine);

} // namespace sfx
