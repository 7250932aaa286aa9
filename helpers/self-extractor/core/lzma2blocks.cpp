// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/core/lzma2blocks.h"

#include <algorithm>

namespace sfx {

namespace {

constexpr std::uint8_t controlCopyAfresh = 1;
constexpr std::uint8_t controlCopy = 2;
constexpr std::uint8_t controlLzma = 0x80;
constexpr std::uint8_t controlLzmaProperties = 0xc0; // and above: with a byte of properties
constexpr std::uint8_t controlLzmaAfresh = 0xe0;     // and above: with an empty dictionary

constexpr std::uint64_t mebibyte = 1024 * 1024;

// The encoder's rule (7-Zip, C/Lzma2Enc.c), rounding included.
std::uint64_t longestBlock(std::uint64_t dictionarySize)
{
    const std::uint64_t usual = std::clamp(4 * dictionarySize, mebibyte, 256 * mebibyte);
    return std::max(usual, dictionarySize) + mebibyte;
}

std::uint64_t readU16BigEndian(const std::uint8_t *bytes)
{
    return (static_cast<std::uint64_t>(bytes[0]) << 8) | bytes[1];
}

bool startsAfresh(std::uint8_t control)
{
    return control == controlCopyAfresh || control >= controlLzmaAfresh;
}

} // namespace

Lzma2Blocks::Lzma2Blocks(ByteSource &source, std::uint64_t offset, std::uint64_t size,
                         std::uint64_t dictionarySize)
    : m_source(source)
    , m_offset(offset)
    , m_size(size)
    , m_longestBlock(longestBlock(dictionarySize))
{
}

bool Lzma2Blocks::readHeader()
{
    const std::uint64_t left = m_size - m_place.packed;
    const std::uint64_t wanted = std::min<std::uint64_t>(left, sizeof m_header);
    return wanted >= 3
        && m_source.readAt(m_offset + m_place.packed, m_header, static_cast<std::size_t>(wanted));
}

// From the chunk whose header has been read to the next one. False: there is none.
bool Lzma2Blocks::passChunk()
{
    const std::uint8_t control = m_header[0];
    std::uint64_t packed = 0;
    std::uint64_t unpacked = readU16BigEndian(m_header + 1) + 1;
    if (control >= controlLzma) {
        unpacked += static_cast<std::uint64_t>(control & 0x1f) << 16;
        packed = 5 + readU16BigEndian(m_header + 3) + 1 + (control >= controlLzmaProperties);
    } else if (control == controlCopyAfresh || control == controlCopy) {
        packed = 3 + unpacked;
    } else {
        return false; // the end, or damage
    }
    if (packed >= m_size - m_place.packed) {
        return false;
    }
    m_place.packed += packed;
    m_place.unpacked += unpacked;
    return readHeader();
}

bool Lzma2Blocks::next(Place &place)
{
    if (m_place.packed == 0 && !readHeader()) {
        return false;
    }
    while (m_place.unpacked - m_blockBegin <= m_longestBlock && passChunk()) {
        if (startsAfresh(m_header[0])) {
            m_blockBegin = m_place.unpacked;
            place = m_place;
            return true;
        }
    }
    return false;
}

} // namespace sfx
