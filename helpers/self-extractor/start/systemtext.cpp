// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/start/systemtext.h"

namespace sfx {

namespace {

bool isInsert(const char16_t *units, std::size_t left)
{
    const bool moreDigits = left > 2 && units[2] >= u'0' && units[2] <= u'9';
    return left >= 2 && units[0] == u'%' && units[1] == u'1' && !moreDigits;
}

} // namespace

bool appendSystemText(Text &text, const char16_t *systemText, std::size_t size,
                      const char16_t *name)
{
    while (size > 0 && systemText[size - 1] <= u' ') {
        --size;
    }
    std::size_t begin = 0; // of what has not been appended yet
    for (std::size_t i = 0; i < size; ++i) {
        if (isInsert(systemText + i, size - i)) {
            if (!text.append(systemText + begin, i - begin) || !text.append(name)) {
                return false;
            }
            begin = i + 2;
        }
    }
    return text.append(systemText + begin, size - begin);
}

} // namespace sfx
