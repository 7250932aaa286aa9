// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/start/keptrecord.h"

#include "7zCrc.h"

#include <cstddef>

namespace sfx {

namespace {

constexpr std::uint32_t recordMark = 0x016b504b; // "KPk", 1

std::uint32_t crcOf(const KeptRecord &record)
{
    return CrcCalc(&record.written, sizeof record - offsetof(KeptRecord, written));
}

std::uint32_t crcOf(const Array<std::uint64_t> &hashes)
{
    return CrcCalc(hashes.data(), hashes.size() * sizeof(std::uint64_t));
}

} // namespace

void describePaths(const Array<std::uint64_t> &hashes, KeptRecord &record)
{
    record.paths = static_cast<std::uint32_t>(hashes.size());
    record.pathsCrc = crcOf(hashes);
}

bool hasPaths(const KeptRecord &record, const Array<std::uint64_t> &hashes)
{
    return record.paths == hashes.size() && record.pathsCrc == crcOf(hashes);
}

void sealRecord(KeptRecord &record)
{
    record.mark = recordMark;
    record.crc = crcOf(record);
}

bool isRecord(const KeptRecord &record)
{
    return record.mark == recordMark && record.crc == crcOf(record) && record.days != 0
        && record.days <= maxKeepDays && record.paths <= maxKeptPaths;
}

} // namespace sfx
