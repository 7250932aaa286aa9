// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/text.h"

namespace sfx {

// Gets the folder in the user's profile that all kept folders lie in, without a separator at its
// end. It may not exist. Returns false if the profile has no folder for local data.
[[nodiscard]] bool findKeptFolders(Text &folder);

} // namespace sfx
