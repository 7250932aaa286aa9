// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/fast-archiver/headernumbers.h"

namespace fast {

void HeaderWriter::fixed(std::uint64_t value, unsigned width)
{
    for (unsigned i = 0; i < width; ++i) {
        byte(static_cast<std::uint8_t>(value & 0xff));
        value >>= 8;
    }
}

void HeaderWriter::bytes(pe::ByteView values)
{
    m_bytes.insert(m_bytes.end(), values.begin(), values.end());
}

void HeaderWriter::number(std::uint64_t value)
{
    unsigned following = 0;
    while (following < 8 && value >> (7 * (following + 1)) != 0) {
        ++following;
    }
    const unsigned ones = 0xff00U >> following & 0xff;
    const std::uint64_t highest = following < 8 ? value >> (8 * following) : 0;
    byte(static_cast<std::uint8_t>(ones | highest));
    fixed(value, following);
}

void HeaderWriter::bits(const std::vector<bool> &values)
{
    for (std::size_t i = 0; i < values.size(); i += 8) {
        unsigned eight = 0;
        for (std::size_t j = i; j < i + 8 && j < values.size(); ++j) {
            eight |= (values[j] ? 0x80U : 0U) >> (j - i);
        }
        byte(static_cast<std::uint8_t>(eight));
    }
}

} // namespace fast
