// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/base/text.h"

#include <cstring>

namespace sfx {

namespace {

// Decodes one character. Returns the number of its bytes, or 0 if they are not valid.
std::size_t decodeOne(const unsigned char *bytes, std::size_t size, char32_t &character)
{
    static constexpr char32_t least[] = {0, 1, 0x80, 0x800, 0x10000};
    const unsigned char first = bytes[0];
    std::size_t length = 1;
    character = first;
    if (first >= 0xf0 && first < 0xf8) {
        length = 4;
        character = first & 0x07;
    } else if (first >= 0xe0 && first < 0xf0) {
        length = 3;
        character = first & 0x0f;
    } else if (first >= 0xc0 && first < 0xe0) {
        length = 2;
        character = first & 0x1f;
    } else if (first >= 0x80) {
        return 0;
    }
    if (length > size) {
        return 0;
    }
    for (std::size_t i = 1; i < length; ++i) {
        if ((bytes[i] & 0xc0) != 0x80) {
            return 0;
        }
        character = (character << 6) | (bytes[i] & 0x3f);
    }
    const bool surrogate = character >= 0xd800 && character < 0xe000;
    return character < least[length] || character > 0x10ffff || surrogate ? 0 : length;
}

} // namespace

std::size_t textLength(const char16_t *text)
{
    std::size_t length = 0;
    while (text[length] != 0) {
        ++length;
    }
    return length;
}

bool Text::assign(const char16_t *units, std::size_t size)
{
    m_size = 0;
    return append(units, size);
}

bool Text::append(const char16_t *units, std::size_t size)
{
    if (m_size + size + 1 > m_units.size()) {
        Array<char16_t> larger;
        if (!larger.allocate((m_size + size + 1) + (m_size + size) / 2)) {
            m_size = 0;
            return false;
        }
        if (m_size != 0) {
            std::memcpy(larger.data(), m_units.data(), m_size * sizeof(char16_t));
        }
        m_units = std::move(larger);
    }
    if (size != 0) {
        std::memcpy(m_units.data() + m_size, units, size * sizeof(char16_t));
    }
    m_size += size;
    m_units[m_size] = 0;
    return true;
}

bool Text::append(const char16_t *zeroTerminated)
{
    return append(zeroTerminated, textLength(zeroTerminated));
}

bool decodeUtf8(const char *bytes, std::size_t size, Text &text)
{
    const auto *in = reinterpret_cast<const unsigned char *>(bytes);
    Array<char16_t> units;
    if (!units.allocate(size)) { // never more units than bytes
        return false;
    }
    std::size_t used = 0;
    while (size != 0) {
        char32_t character = 0;
        const std::size_t length = decodeOne(in, size, character);
        if (length == 0) {
            return false;
        }
        in += length;
        size -= length;
        if (character >= 0x10000) {
            units[used++] = static_cast<char16_t>(0xd7c0 + (character >> 10));
            character = 0xdc00 + (character & 0x3ff);
        }
        units[used++] = static_cast<char16_t>(character);
    }
    return text.assign(units.data(), used);
}

} // namespace sfx
