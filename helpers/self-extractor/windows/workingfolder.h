// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/text.h"

namespace sfx {

// Sets `working` to a spelling of `folder` that a process can be started in: the same, or the short
// names if it is too long. Empty if it is too long with short names as well: then the process
// begins in the folder of this one. Returns false if there is not enough memory.
[[nodiscard]] bool workingFolder(const Text &folder, Text &working);

} // namespace sfx
