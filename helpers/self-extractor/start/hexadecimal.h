// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/text.h"

namespace sfx {

// Appends the bytes as hexadecimal digits, with small letters. Returns false if there is not enough
// memory.
[[nodiscard]] bool appendHexadecimal(Text &text, const unsigned char *bytes, std::size_t size);

// Whether the zero-terminated text is this prefix, that many such digits, and this suffix.
bool isHexadecimalName(const char16_t *text, const char16_t *prefix, std::size_t digits,
                       const char16_t *suffix);

} // namespace sfx
