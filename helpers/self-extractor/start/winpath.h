// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/text.h"

namespace sfx {

/// The form of an absolute path that has no length limit: `\\?\C:\...` or `\\?\UNC\...`. False: no
/// memory.
[[nodiscard]] bool toExtendedPath(const Text &path, Text &extended);

/// The folder that an absolute path's file is in; without a separator at its end, unless it is a
/// drive's root (`C:\`). False: no memory.
[[nodiscard]] bool folderOf(const Text &path, Text &folder);

} // namespace sfx
