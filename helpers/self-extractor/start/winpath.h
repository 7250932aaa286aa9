// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/text.h"

namespace sfx {

// Converts an absolute path to the form without a length limit: `\\?\C:\...` or `\\?\UNC\...`.
// Returns false if there is not enough memory.
[[nodiscard]] bool toExtendedPath(const Text &path, Text &extended);

// The folder that contains the file of an absolute path, without a separator at its end, except for
// a drive's root (`C:\`). Returns false if there is not enough memory.
[[nodiscard]] bool folderOf(const Text &path, Text &folder);

} // namespace sfx
