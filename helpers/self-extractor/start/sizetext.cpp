// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/start/sizetext.h"

namespace sfx {

namespace {

constexpr std::uint64_t mega = 1024 * 1024;
constexpr std::uint64_t giga = 1024 * mega;

constexpr std::uint64_t dividedUp(std::uint64_t value, std::uint64_t by)
{
    return value / by + (value % by != 0 ? 1 : 0);
}

[[nodiscard]] bool appendNumber(Text &text, std::uint64_t number)
{
    char16_t digits[20];
    std::size_t begin = 20;
    do {
        digits[--begin] = static_cast<char16_t>(u'0' + number % 10);
        number /= 10;
    } while (number != 0);
    return text.append(digits + begin, 20 - begin);
}

} // namespace

bool appendSize(Text &text, std::uint64_t bytes)
{
    const std::uint64_t megas = dividedUp(bytes, mega);
    if (megas < 1024) {
        return appendNumber(text, megas == 0 ? 1 : megas) && text.append(u" MB");
    }
    // Only the remainder is multiplied, which cannot overflow.
    const std::uint64_t tenths = bytes / giga * 10 + dividedUp(bytes % giga * 10, giga);
    return appendNumber(text, tenths / 10) && text.append(u".") && appendNumber(text, tenths % 10)
        && text.append(u" GB");
}

} // namespace sfx
