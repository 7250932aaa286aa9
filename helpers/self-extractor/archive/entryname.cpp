// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/archive/entryname.h"

#include <cstdint>
#include <initializer_list>

namespace sfx {

namespace {

char16_t asciiUpper(char16_t unit)
{
    return unit >= u'a' && unit <= u'z' ? static_cast<char16_t>(unit - 0x20) : unit;
}

bool equalsIgnoringCase(const char16_t *name, std::size_t size, const char16_t *upper)
{
    for (std::size_t i = 0; i < size; ++i) {
        if (upper[i] == 0 || asciiUpper(name[i]) != upper[i]) {
            return false;
        }
    }
    return upper[size] == 0;
}

// Windows treats the superscript digits of Latin-1 as digits here.
bool isPortDigit(char16_t unit)
{
    return (unit >= u'0' && unit <= u'9') || unit == 0xb9 || unit == 0xb2 || unit == 0xb3;
}

// Only the part before the first dot counts, without spaces at its end.
bool isDevice(const char16_t *name, std::size_t size)
{
    std::size_t base = 0;
    while (base < size && name[base] != u'.') {
        ++base;
    }
    while (base > 0 && name[base - 1] == u' ') {
        --base;
    }
    for (const char16_t *device : {u"CON", u"PRN", u"AUX", u"NUL", u"CONIN$", u"CONOUT$"}) {
        if (equalsIgnoringCase(name, base, device)) {
            return true;
        }
    }
    return base == 4 && isPortDigit(name[3])
        && (equalsIgnoringCase(name, 3, u"COM") || equalsIgnoringCase(name, 3, u"LPT"));
}

// A bit for each of these characters, and for those before the space.
constexpr std::uint64_t bitsOf(const char *characters, unsigned first)
{
    std::uint64_t bits = first == 0 ? 0xffffffff : 0;
    for (; *characters != 0; ++characters) {
        const unsigned place = static_cast<unsigned char>(*characters) - first;
        bits |= place < 64 ? std::uint64_t{1} << place : 0;
    }
    return bits;
}

bool isForbidden(char16_t unit)
{
    constexpr const char *forbidden = "<>:\"/\\|?*";
    constexpr std::uint64_t lower = bitsOf(forbidden, 0);
    constexpr std::uint64_t upper = bitsOf(forbidden, 64);
    return unit < 128 && (((unit < 64 ? lower : upper) >> (unit % 64)) & 1) != 0;
}

} // namespace

NameFault faultOfComponent(const char16_t *name, std::size_t size)
{
    if (size == 0) {
        return NameFault::Empty;
    }
    if (size > 255) {
        return NameFault::TooLong;
    }
    for (std::size_t i = 0; i < size; ++i) {
        if (isForbidden(name[i])) {
            return NameFault::Character;
        }
    }
    // This covers "." and ".." too.
    if (name[size - 1] == u'.' || name[size - 1] == u' ') {
        return NameFault::SpaceOrDot;
    }
    return isDevice(name, size) ? NameFault::Device : NameFault::None;
}

bool isSafeComponent(const char16_t *name, std::size_t size)
{
    return faultOfComponent(name, size) == NameFault::None;
}

bool isSafePath(const char16_t *path, std::size_t size)
{
    if (size > maxPathSize) {
        return false;
    }
    std::size_t start = 0;
    for (std::size_t i = 0; i <= size; ++i) {
        if (i == size || path[i] == u'/') {
            if (!isSafeComponent(path + start, i - start)) {
                return false;
            }
            start = i + 1;
        }
    }
    return true;
}

} // namespace sfx
