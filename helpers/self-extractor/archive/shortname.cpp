// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/archive/shortname.h"

#include "helpers/self-extractor/archive/entryname.h"

namespace sfx {

namespace {

constexpr std::size_t longestBase = 8;
constexpr std::size_t longestExtension = 3;

bool endsWithTildeAndNumber(const char16_t *base, std::size_t size)
{
    std::size_t end = size;
    while (end > 0 && base[end - 1] >= u'0' && base[end - 1] <= u'9') {
        --end;
    }
    return end < size && end > 1 && base[end - 1] == u'~';
}

} // namespace

bool couldBeShortName(const char16_t *path, std::size_t size)
{
    const std::size_t begin = lastComponent(path, size);
    const char16_t *name = path + begin;
    const std::size_t length = size - begin;
    std::size_t base = 0;
    while (base < length && name[base] != u'.') {
        ++base;
    }
    const bool fits = base <= longestBase
        && (base == length || length - base - 1 <= longestExtension);
    return fits && endsWithTildeAndNumber(name, base);
}

} // namespace sfx
