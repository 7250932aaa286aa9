// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/start/peimage.h"

#include "helpers/self-extractor/base/littleendian.h"

namespace sfx {

namespace {

constexpr std::size_t dosHeaderSize = 64;
constexpr std::size_t peHeaderSize = 24; // signature and COFF header
constexpr std::size_t sectionSize = 40;
constexpr unsigned maxSections = 96; // the Windows loader's own limit

} // namespace

Status findImageEnd(ByteSource &source, std::uint64_t &end)
{
    std::uint8_t dos[dosHeaderSize];
    if (!source.readAt(0, dos, sizeof dos) || dos[0] != 'M' || dos[1] != 'Z') {
        return Status::Damaged;
    }
    const std::uint64_t peOffset = readU32(dos + 0x3c);
    std::uint8_t pe[peHeaderSize];
    if (!source.readAt(peOffset, pe, sizeof pe) || readU32(pe) != 0x00004550) {
        return Status::Damaged;
    }
    const unsigned sections = readU16(pe + 6);
    const std::uint64_t table = peOffset + peHeaderSize + readU16(pe + 20);
    if (sections == 0 || sections > maxSections) {
        return Status::Damaged;
    }
    end = table + sections * sectionSize;
    for (unsigned i = 0; i < sections; ++i) {
        std::uint8_t section[sectionSize];
        if (!source.readAt(table + i * sectionSize, section, sizeof section)) {
            return Status::Damaged;
        }
        const std::uint64_t rawSize = readU32(section + 16);
        const std::uint64_t rawEnd = readU32(section + 20) + rawSize;
        if (rawSize != 0 && rawEnd > end) {
            end = rawEnd;
        }
    }
    return end <= source.size() ? Status::Ok : Status::Damaged;
}

} // namespace sfx
