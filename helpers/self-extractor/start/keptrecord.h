// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/memory.h"
#include "helpers/self-extractor/start/keptname.h"

namespace sfx {

// What the file beside a kept folder says about it. The members have the order and the size that they
// have in the file, with the least significant byte first.
struct KeptRecord
{
    std::uint32_t mark = 0; // of a record, and the CRC of everything after the CRC
    std::uint32_t crc = 0;
    // When the system was started that the contents were written by; they may still be in its memory
    // only. 0: later on, they have been read from the disk, and were right.
    std::uint64_t written = 0;
    std::uint64_t newest = 0; // the latest time of a file in the archive
    std::uint32_t days = 0;   // how long the folder stays without being used
    // Number of the paths from the archive, whose hashes follow in the file, and the hashes' CRC.
    std::uint32_t paths = 0;
    std::uint32_t pathsCrc = 0;
    std::uint32_t reserved = 0;
    Digest product = {}; // zeros: not known
};
static_assert(sizeof(KeptRecord) == 72);

// A longer list is not read: the archive's own header could not have so many.
constexpr std::uint32_t maxKeptPaths = 1u << 26;

// Fills in number and CRC of the hashes. 7-Zip's table of CRCs must exist.
void describePaths(const Array<std::uint64_t> &hashes, KeptRecord &record);
// Whether these are the hashes that the record describes.
bool hasPaths(const KeptRecord &record, const Array<std::uint64_t> &hashes);

// Sets mark and CRC, before the record is written.
void sealRecord(KeptRecord &record);
// Whether what has been read is a record. It may be something else, for example because it has never
// reached the disk.
bool isRecord(const KeptRecord &record);

} // namespace sfx
