// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/start/hexadecimal.h"

namespace sfx {

namespace {

constexpr const char16_t *digits = u"0123456789abcdef";

bool isDigit(char16_t unit)
{
    return (unit >= u'0' && unit <= u'9') || (unit >= u'a' && unit <= u'f');
}

} // namespace

bool appendHexadecimal(Text &text, const unsigned char *bytes, std::size_t size)
{
    for (std::size_t i = 0; i < size; ++i) {
        const char16_t both[2] = {digits[bytes[i] >> 4], digits[bytes[i] & 15]};
        if (!text.append(both, 2)) {
            return false;
        }
    }
    return true;
}

bool isHexadecimalName(const char16_t *text, const char16_t *prefix, std::size_t digits,
                       const char16_t *suffix)
{
    for (; *prefix != 0; ++prefix, ++text) {
        if (*text != *prefix) {
            return false;
        }
    }
    for (; digits != 0; --digits, ++text) {
        if (!isDigit(*text)) {
            return false;
        }
    }
    for (; *suffix != 0 && *text == *suffix; ++suffix, ++text) {
    }
    return *suffix == 0 && *text == 0;
}

} // namespace sfx
