// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/fast-archiver/solidblocks.h"
#include "helpers/pe/bytes.h"

#include <array>

namespace fast {

// What a block became.
struct PackedBlock
{
    std::uint64_t packedSize = 0;
    std::vector<std::uint32_t> checkSums; // of the files' content, in the block's order
};

constexpr std::size_t startHeaderSize = 32;

// Writes the header of a 7z archive (7-Zip, DOC/7zFormat.txt): all files that are in no block, then
// those of the blocks. `blocks` and `packed` belong together. `level` is libzstd's.
pe::Bytes archiveHeader(const std::vector<SourceFile> &files, const std::vector<SolidBlock> &blocks,
                        const std::vector<PackedBlock> &packed, int level);

// A header that was packed with LZMA.
struct PackedHeader
{
    pe::Bytes bytes;
    std::array<std::uint8_t, 5> properties = {};
    std::uint64_t unpackedSize = 0;
    std::uint32_t unpackedCheckSum = 0;
};

// Writes the header that says where the packed header lies: `offset` bytes after the start header.
pe::Bytes headerOfPackedHeader(const PackedHeader &header, std::uint64_t offset);

// Writes the first bytes of the archive. `offset` is that of the header, after the start header.
std::array<std::uint8_t, startHeaderSize> startHeader(std::uint64_t offset, pe::ByteView header);

} // namespace fast
