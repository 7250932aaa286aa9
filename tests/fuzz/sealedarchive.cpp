// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/fuzz/sealedarchive.h"

#include "7zCrc.h"

#include <cstring>

namespace {

void write(std::uint8_t *to, std::uint64_t value, unsigned width)
{
    for (unsigned i = 0; i < width; ++i) {
        to[i] = static_cast<std::uint8_t>(value >> (8 * i));
    }
}

} // namespace

void sealArchive(std::span<std::uint8_t> archive)
{
    static constexpr std::uint8_t signature[] = {'7', 'z', 0xbc, 0xaf, 0x27, 0x1c, 0};
    std::memcpy(archive.data(), signature, sizeof signature);
    std::uint64_t offset = 0;
    for (unsigned i = 8; i-- > 0;) {
        offset = offset * 256 + archive[12 + i];
    }
    offset %= archive.size() - startHeaderSize + 1;
    const std::size_t size = archive.size() - startHeaderSize - static_cast<std::size_t>(offset);
    CrcGenerateTable();
    write(archive.data() + 12, offset, 8);
    write(archive.data() + 20, size, 8);
    write(archive.data() + 28, CrcCalc(archive.data() + startHeaderSize + offset, size), 4);
    write(archive.data() + 8, CrcCalc(archive.data() + 12, 20), 4);
}
