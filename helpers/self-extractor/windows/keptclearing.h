// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/start/keptrecord.h"
#include "helpers/self-extractor/windows/keptpaths.h"

namespace sfx {

// Removes kept folders of this user that nobody uses: those that have not been used for their number
// of days, and older versions of the product of `record`. `paths` are those of this start, whose
// folder stays. What killed starts have left goes, too. Takes at most half a second; the next start
// continues.
void clearKeptFolders(const KeptPaths &paths, const KeptRecord &record);

} // namespace sfx
