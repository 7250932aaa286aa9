// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/text.h"

namespace sfx {

// The name of the application's folder in a private folder whose path has `rootSize` units: the
// requested name, or a short one if the program's path would exceed MAX_PATH (Microsoft: 259 units
// and the terminator).
const char16_t *applicationFolderName(std::size_t rootSize, const Text &requested,
                                      const Text &program);

} // namespace sfx
