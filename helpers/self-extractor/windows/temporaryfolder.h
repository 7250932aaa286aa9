// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/text.h"

namespace sfx {

// Gets the user's temporary folder as an absolute path with a separator at its end; the folder may
// not exist. Returns false on failure, with the reason in GetLastError().
[[nodiscard]] bool findTemporaryFolder(Text &folder);

} // namespace sfx
