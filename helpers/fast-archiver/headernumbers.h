// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/pe/bytes.h"

#include <vector>

namespace fast {

// Collects the bytes of a 7z header.
class HeaderWriter
{
public:
    void byte(std::uint8_t value) { m_bytes.push_back(value); }
    void bytes(pe::ByteView values);
    void fixed32(std::uint32_t value) { fixed(value, 4); }
    void fixed64(std::uint64_t value) { fixed(value, 8); }
    // A number in one to nine bytes: the leading one bits of the first byte tell how many bytes
    // follow, and its other bits are the number's highest.
    void number(std::uint64_t value);
    // One bit for each value, the highest bit of a byte first.
    void bits(const std::vector<bool> &values);

    const pe::Bytes &content() const { return m_bytes; }

private:
    void fixed(std::uint64_t value, unsigned width);

    pe::Bytes m_bytes;
};

} // namespace fast
