// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/pe/bytes.h"
#include "helpers/pe/file.h"

namespace pe {

// The PE checksum: the sum of all 16-bit little-endian words of the file, carries folded back in,
// the CheckSum field itself left out, plus the file's length. Folding makes it a sum modulo 65535,
// in which every byte has a share of its own: the sum can follow a change without the file
// being read again.
class WordSum
{
public:
    // Bytes at this offset of the file join, or leave, the sum.
    void add(ByteView bytes, std::uint64_t offset);
    void remove(ByteView bytes, std::uint64_t offset);

    // Everything but `head` moves on by an odd number of bytes: each byte into the other half of a
    // word.
    void moveByOddLength(const WordSum &head);

    // The value of the CheckSum field for a file of this length whose sum this is.
    std::uint32_t checkSum(std::uint64_t fileSize) const;

    // The sum behind a CheckSum value that is taken to be right.
    static WordSum fromCheckSum(std::uint32_t checkSum, std::uint64_t fileSize);

    // Whether the value can be the checksum of a file of this length. A value made before data
    // were appended cannot, once more than 64 KiB were.
    static bool isPlausible(std::uint32_t checkSum, std::uint64_t fileSize);

private:
    std::uint32_t m_sum = 0; // below 65535
};

// The sum over a range of the file, the CheckSum field included. Reads everything but holes.
Result<WordSum> sumOfFile(const File &file, const FileRange &range);

} // namespace pe
