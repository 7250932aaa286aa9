// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/text.h"

namespace sfx {

// Appends the bytes as hexadecimal digits, with small letters. Returns false if there is not enough
// memory.
[[nodiscard]] bool appendHexadecimal(Text &text, const unsigned char *bytes, std::size_t size);

// Whether the zero-terminated text begins with that many such digits.
bool beginsWithDigits(const char16_t *text, std::size_t digits);
// Whether the text, which is what follows the digits, is exactly this suffix.
bool endsAs(const char16_t *text, const char16_t *suffix);

} // namespace sfx
