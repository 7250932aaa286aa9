// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/start/keptrules.h"

#include <cstring>

namespace sfx {

namespace {

constexpr std::uint64_t day = 24ull * 60 * 60 * 10000000;
constexpr std::size_t longestPath = 259; // Microsoft: MAX_PATH, without the terminator

} // namespace

bool fitsAsWell(std::size_t keptFolder, std::size_t privateFolder, std::size_t longest)
{
    const auto fits = [longest](std::size_t folder) {
        return folder + 1 + longest <= longestPath;
    };
    return fits(keptFolder) || !fits(privateFolder);
}

bool mustCompareContents(const KeptRecord &record, std::uint64_t started)
{
    return record.written != 0 && record.written != started;
}

bool canGoOnPrivately(Status status)
{
    return status == Status::WriteFailed || status == Status::DiskFull
        || status == Status::NoMemory;
}

KeptFate fateOf(const KeptRecord &record, std::uint64_t lastUse, std::uint64_t now)
{
    if (lastUse > now) {
        return KeptFate::StayFromNow;
    }
    return now - lastUse > record.days * day ? KeptFate::Go : KeptFate::Stay;
}

bool isOlderVersion(const KeptRecord &record, const KeptRecord &other)
{
    constexpr Digest unknown = {};
    return other.newest < record.newest && std::memcmp(record.product, unknown, sizeof unknown) != 0
        && std::memcmp(record.product, other.product, sizeof unknown) == 0;
}

} // namespace sfx
