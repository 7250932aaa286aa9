// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/start/privatename.h"

namespace sfx {

namespace {

constexpr const char16_t *digits = u"0123456789abcdef";

bool isDigit(char16_t unit)
{
    return (unit >= u'0' && unit <= u'9') || (unit >= u'a' && unit <= u'f');
}

} // namespace

bool makePrivateName(const unsigned char (&random)[privateNameBytes], Text &name)
{
    char16_t hexadecimal[2 * privateNameBytes];
    for (std::size_t i = 0; i < privateNameBytes; ++i) {
        hexadecimal[2 * i] = digits[random[i] >> 4];
        hexadecimal[2 * i + 1] = digits[random[i] & 15];
    }
    return name.assign(u"kp-", 3) && name.append(hexadecimal, 2 * privateNameBytes);
}

bool isLockName(const char16_t *name)
{
    for (const char16_t *prefix = u"kp-"; *prefix != 0; ++prefix, ++name) {
        if (*name != *prefix) {
            return false;
        }
    }
    for (std::size_t i = 0; i < 2 * privateNameBytes; ++i, ++name) {
        if (!isDigit(*name)) {
            return false;
        }
    }
    const char16_t *suffix = lockSuffix;
    for (; *suffix != 0 && *name == *suffix; ++suffix, ++name) {
    }
    return *suffix == 0 && *name == 0;
}

} // namespace sfx
