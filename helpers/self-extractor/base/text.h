// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/memory.h"

#include <cstddef>

namespace sfx {

// A zero-terminated UTF-16 text on the heap; an empty text needs no memory.
class Text
{
public:
    const char16_t *data() const { return m_size == 0 ? u"" : m_units.data(); }
    // Length in UTF-16 units, without the terminator.
    std::size_t size() const { return m_size; }
    bool isEmpty() const { return m_size == 0; }

    // Return false if there is not enough memory; the text is then empty.
    [[nodiscard]] bool assign(const char16_t *units, std::size_t size);
    [[nodiscard]] bool append(const char16_t *units, std::size_t size);
    [[nodiscard]] bool append(const Text &other) { return append(other.data(), other.size()); }
    [[nodiscard]] bool append(const char16_t *zeroTerminated);
    // Shortens the text to `size` units; does nothing if it is not longer.
    void truncate(std::size_t size)
    {
        if (size < m_size) {
            m_size = size;
            m_units[size] = 0;
        }
    }

private:
    Array<char16_t> m_units;
    std::size_t m_size = 0;
};

// Length of a zero-terminated UTF-16 text, in units.
std::size_t textLength(const char16_t *text);

// Decodes strict UTF-8: no overlong forms, no surrogates, no zero byte. Returns false if the bytes
// are not valid UTF-8 or if there is not enough memory.
[[nodiscard]] bool decodeUtf8(const char *bytes, std::size_t size, Text &text);

} // namespace sfx
