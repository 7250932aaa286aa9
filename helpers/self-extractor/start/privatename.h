// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/text.h"

namespace sfx {

// Number of random bytes in a private folder's name; they make each name unique.
constexpr std::size_t privateNameBytes = 10;

// The lock file has the folder's name with this suffix and lies beside the folder.
constexpr const char16_t *lockSuffix = u".lock";
// Matches the name of every lock file, and maybe others.
constexpr const char16_t *lockPattern = u"kp-*.lock";

// Sets `name` to "kp-" and the bytes in hexadecimal digits. Returns false if there is not enough
// memory.
[[nodiscard]] bool makePrivateName(const unsigned char (&random)[privateNameBytes], Text &name);

// Whether this is the name of a private folder's lock file.
bool isLockName(const char16_t *name);

} // namespace sfx
