// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/start/settingvalues.h"

namespace sfx {

namespace {

// A control character could change what a terminal shows. A tab separates arguments.
bool hasControlCharacter(const Text &text)
{
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char16_t unit = text.data()[i];
        if ((unit < 0x20 && unit != u'\t') || (unit >= 0x7f && unit < 0xa0)) {
            return true;
        }
    }
    return false;
}

} // namespace

bool readText(const Slice &value, Text &text)
{
    return value.data == nullptr
        || (decodeUtf8(value.data, value.size, text) && !hasControlCharacter(text));
}

} // namespace sfx
