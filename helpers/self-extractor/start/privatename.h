// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/text.h"

namespace sfx {

/// What a private folder's name is made of, so that two of them are never the same.
constexpr std::size_t privateNameBytes = 10;

/// Behind the folder's name: the name of the lock file beside it.
constexpr const char16_t *lockSuffix = u".lock";
/// Every lock file's name matches this; so may others.
constexpr const char16_t *lockPattern = u"kp-*.lock";

/// "kp-" and the bytes in hexadecimal digits. False: no memory.
[[nodiscard]] bool makePrivateName(const unsigned char (&random)[privateNameBytes], Text &name);

/// Whether a file's name is exactly that of a private folder's lock file.
bool isLockName(const char16_t *name);

} // namespace sfx
