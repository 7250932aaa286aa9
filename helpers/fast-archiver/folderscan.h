// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/fast-archiver/failure.h"
#include "helpers/fast-archiver/sourcefile.h"

#include <atomic>
#include <vector>

namespace fast {

// Lists everything in `folder` (which ends with a separator), at any depth, as 7-Zip's archiver
// does: on Linux symbolic links are entries of their own, on Windows they are followed. Fails if
// something cannot be listed, is neither file nor folder, or has a name that cannot be stored; and
// if `stopped` becomes true. The order of the entries is that of their paths.
Outcome<std::vector<SourceFile>> scanFolder(const pe::NativePath &folder,
                                            const std::atomic<bool> &stopped);

} // namespace fast
