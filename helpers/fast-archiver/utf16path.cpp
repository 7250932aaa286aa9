// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/fast-archiver/utf16path.h"

namespace fast {

namespace {

constexpr char32_t invalid = 0xffffffff;

// Takes the first character from `text`.
char32_t takeCharacter(std::string_view &text)
{
    const auto first = static_cast<unsigned char>(text.front());
    const unsigned more = first < 0x80 ? 0 : first < 0xe0 ? 1 : first < 0xf0 ? 2 : 3;
    constexpr unsigned char masks[] = {0x7f, 0x1f, 0x0f, 0x07};
    constexpr char32_t smallest[] = {0, 0x80, 0x800, 0x10000};
    if ((first >= 0x80 && first < 0xc0) || first >= 0xf8 || text.size() <= more) {
        return invalid;
    }
    char32_t character = first & masks[more];
    for (unsigned i = 1; i <= more; ++i) {
        const auto next = static_cast<unsigned char>(text[i]);
        if ((next & 0xc0) != 0x80) {
            return invalid;
        }
        character = (character << 6) | (next & 0x3f);
    }
    text.remove_prefix(more + 1);
    const bool isSurrogate = character >= 0xd800 && character < 0xe000;
    return character < smallest[more] || character > 0x10ffff || isSurrogate ? invalid : character;
}

} // namespace

std::optional<std::u16string> utf16NameOf(std::string_view name)
{
    std::u16string units;
    while (!name.empty()) {
        const char32_t character = takeCharacter(name);
        if (character == invalid || character == U'\\') {
            return std::nullopt;
        }
        if (character < 0x10000) {
            units += static_cast<char16_t>(character);
        } else {
            units += static_cast<char16_t>(0xd800 + ((character - 0x10000) >> 10));
            units += static_cast<char16_t>(0xdc00 + ((character - 0x10000) & 0x3ff));
        }
    }
    return units;
}

} // namespace fast
