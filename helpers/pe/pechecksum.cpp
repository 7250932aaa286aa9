// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/pe/pechecksum.h"

#include <algorithm>
#include <cstring>

namespace pe {

namespace {

// Since 2^16 is 1 modulo 65535, words of any multiple of 16 bits may be summed; 32-bit words in
// 64-bit sums are what compilers turn into vector code.
std::uint32_t sumOf(ByteView bytes)
{
    const std::size_t words = bytes.size() / 4;
    const std::uint8_t *data = bytes.data();
    std::uint64_t sum = 0;
    for (std::size_t i = 0; i < words; ++i) {
        std::uint32_t word = 0;
        std::memcpy(&word, data + 4 * i, 4);
        sum += word;
    }
    for (std::size_t i = 4 * words; i < bytes.size(); ++i) {
        sum += static_cast<std::uint64_t>(bytes[i]) << (8 * (i & 1));
    }
    return static_cast<std::uint32_t>(sum % 65535);
}

// The share of bytes that begin at this offset.
std::uint32_t shareOf(ByteView bytes, std::uint64_t offset)
{
    const std::uint32_t sum = sumOf(bytes);
    // At an odd offset each byte has the other half of its word.
    return (offset & 1) == 0 ? sum : (sum * 256) % 65535;
}

} // namespace

void WordSum::add(ByteView bytes, std::uint64_t offset)
{
    m_sum = (m_sum + shareOf(bytes, offset)) % 65535;
}

void WordSum::remove(ByteView bytes, std::uint64_t offset)
{
    m_sum = (m_sum + 65535 - shareOf(bytes, offset)) % 65535;
}

std::uint32_t WordSum::checkSum(std::uint64_t fileSize) const
{
    // A folded sum of anything but zeros is never 0.
    const std::uint32_t folded = m_sum == 0 ? 65535 : m_sum;
    return static_cast<std::uint32_t>(folded + fileSize);
}

WordSum WordSum::fromCheckSum(std::uint32_t checkSum, std::uint64_t fileSize)
{
    WordSum sum;
    sum.m_sum = (checkSum - static_cast<std::uint32_t>(fileSize)) % 65535;
    return sum;
}

bool WordSum::isPlausible(std::uint32_t checkSum, std::uint64_t fileSize)
{
    const std::uint32_t folded = checkSum - static_cast<std::uint32_t>(fileSize);
    return folded >= 1 && folded <= 65535;
}

void WordSum::moveByOddLength(const WordSum &head)
{
    const std::uint32_t tail = (m_sum + 65535 - head.m_sum) % 65535;
    m_sum = (head.m_sum + tail * 256) % 65535;
}

Result<WordSum> sumOfFile(const File &file, const FileRange &range)
{
    WordSum sum;
    Bytes buffer(256 * 1024); // stays in the processor's cache
    FileRange data = file.nextData(range.begin);
    while (data.begin < std::min(data.end, range.end)) {
        const auto length
            = std::min<std::uint64_t>(buffer.size(), std::min(data.end, range.end) - data.begin);
        const auto part = std::span(buffer).first(length);
        if (const auto read = file.readAt(data.begin, part); read.hasError()) {
            return read.error();
        }
        sum.add(part, data.begin);
        data.begin += length;
        if (data.begin == data.end) {
            data = file.nextData(data.begin);
        }
    }
    return sum;
}

} // namespace pe
