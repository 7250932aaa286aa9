// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/status.h"
#include "helpers/self-extractor/windows/lockfile.h"
#include "helpers/self-extractor/windows/progresswindow.h"
#include "helpers/self-extractor/windows/useronly.h"

namespace sfx {

// Steps on the way to a kept folder. Paths are in extended form.

// Opens or makes the folder that all kept ones lie in. Returns false if it is not this user's.
bool openBase(const Text &path, SECURITY_ATTRIBUTES *security, Handle &base);

// Takes the lock file. Waits as long as another start has it. WriteFailed: it cannot be taken. The
// window may be missing.
Status waitForTurn(LockFile &lock, const Text &path, SECURITY_ATTRIBUTES *security,
                   const Owned<ProgressWindow> &window);

// Makes sure that the path of an entry leads to a folder or to nothing. If `removes`, something else
// is removed; of a link, only the link. Returns false if something else is left.
bool clearWay(HANDLE parent, const Text &name, const Text &path, bool removes);

// Gives a folder its final path, which must be free. A scanner may look into the new files, and as
// long as it has one open, the folder cannot move; so this tries for 2.5 seconds.
bool movePatiently(const Text &from, const Text &to);

} // namespace sfx
