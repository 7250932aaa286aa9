// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/fast-archiver/archiveheader.h"

#include "helpers/fast-archiver/filesinfo.h"
#include "helpers/fast-archiver/headerproperties.h"

#include <algorithm>

#include "7zCrc.h"

namespace fast {

namespace {

constexpr std::uint8_t hasProperties
    = 0x20; // in a coder's first byte; the rest is the size of its id
constexpr std::uint8_t zstdId[] = {0x04, 0xf7, 0x11, 0x01};
constexpr std::uint8_t x86FilterId[] = {0x03, 0x03, 0x01, 0x03};
constexpr std::uint8_t lzmaId[] = {0x03, 0x01, 0x01};

void writeCoder(HeaderWriter &header, pe::ByteView id, pe::ByteView properties)
{
    const auto size = static_cast<std::uint8_t>(id.size());
    header.byte(static_cast<std::uint8_t>(properties.empty() ? size : size | hasProperties));
    header.bytes(id);
    if (!properties.empty()) {
        header.number(properties.size());
        header.bytes(properties);
    }
}

// The filter comes first: its output is the block. Its input (0) is the output of the other coder
// (1).
void writeCoders(HeaderWriter &header, const SolidBlock &block, int level)
{
    // The version of the format, and the level. Readers go by the frames alone.
    const std::uint8_t properties[] = {1, 5, static_cast<std::uint8_t>(level), 0, 0};
    header.number(block.isFiltered ? 2 : 1);
    if (block.isFiltered) {
        writeCoder(header, x86FilterId, {});
    }
    writeCoder(header, zstdId, properties);
    if (block.isFiltered) {
        header.number(0);
        header.number(1);
    }
}

void writePackInfo(HeaderWriter &header, std::uint64_t offset,
                   const std::vector<std::uint64_t> &sizes)
{
    header.byte(PackInfo);
    header.number(offset);
    header.number(sizes.size());
    header.byte(Size);
    for (const std::uint64_t size : sizes) {
        header.number(size);
    }
    header.byte(End);
}

void writeUnpackInfo(HeaderWriter &header, const std::vector<SolidBlock> &blocks, int level)
{
    header.byte(UnpackInfo);
    header.byte(Folder);
    header.number(blocks.size());
    header.byte(isHere);
    for (const SolidBlock &block : blocks) {
        writeCoders(header, block, level);
    }
    header.byte(CodersUnpackSize);
    for (const SolidBlock &block : blocks) {
        for (int coder = block.isFiltered ? 2 : 1; coder > 0; --coder) {
            header.number(block.size);
        }
    }
    header.byte(End);
}

// The sizes of all files but the last of each block, and the check sums of all.
void writeSubStreamsInfo(HeaderWriter &header, const std::vector<SourceFile> &files,
                         const std::vector<SolidBlock> &blocks,
                         const std::vector<PackedBlock> &packed)
{
    header.byte(SubStreamsInfo);
    header.byte(NumUnpackStream);
    for (const SolidBlock &block : blocks) {
        header.number(block.files.size());
    }
    HeaderWriter sizes;
    for (const SolidBlock &block : blocks) {
        for (std::size_t i = 0; i + 1 < block.files.size(); ++i) {
            sizes.number(files[block.files[i]].size);
        }
    }
    if (!sizes.content().empty()) {
        header.byte(Size);
        header.bytes(sizes.content());
    }
    header.byte(Crc);
    header.byte(allAreDefined);
    for (const PackedBlock &block : packed) {
        for (const std::uint32_t checkSum : block.checkSums) {
            header.fixed32(checkSum);
        }
    }
    header.byte(End);
}

} // namespace

pe::Bytes archiveHeader(const std::vector<SourceFile> &files, const std::vector<SolidBlock> &blocks,
                        const std::vector<PackedBlock> &packed, int level)
{
    HeaderWriter header;
    header.byte(Header);
    if (!blocks.empty()) {
        std::vector<std::uint64_t> sizes;
        sizes.reserve(packed.size());
        for (const PackedBlock &block : packed) {
            sizes.push_back(block.packedSize);
        }
        header.byte(MainStreamsInfo);
        writePackInfo(header, 0, sizes);
        writeUnpackInfo(header, blocks, level);
        writeSubStreamsInfo(header, files, blocks, packed);
        header.byte(End);
    }
    writeFilesInfo(header, files, blocks);
    header.byte(End);
    return header.content();
}

pe::Bytes headerOfPackedHeader(const PackedHeader &header, std::uint64_t offset)
{
    HeaderWriter outer;
    outer.byte(EncodedHeader);
    writePackInfo(outer, offset, {header.bytes.size()});
    outer.byte(UnpackInfo);
    outer.byte(Folder);
    outer.number(1);
    outer.byte(isHere);
    outer.number(1);
    writeCoder(outer, lzmaId, header.properties);
    outer.byte(CodersUnpackSize);
    outer.number(header.unpackedSize);
    outer.byte(Crc);
    outer.byte(allAreDefined);
    outer.fixed32(header.unpackedCheckSum);
    outer.byte(End);
    outer.byte(End);
    return outer.content();
}

std::array<std::uint8_t, startHeaderSize> startHeader(std::uint64_t offset, pe::ByteView header)
{
    HeaderWriter checked;
    checked.fixed64(offset);
    checked.fixed64(header.size());
    checked.fixed32(CrcCalc(header.data(), header.size()));
    HeaderWriter start;
    start.bytes(std::array<std::uint8_t, 8>{'7', 'z', 0xbc, 0xaf, 0x27, 0x1c, 0, 4}); // version 0.4
    start.fixed32(CrcCalc(checked.content().data(), checked.content().size()));
    start.bytes(checked.content());
    std::array<std::uint8_t, startHeaderSize> bytes = {};
    std::copy(start.content().begin(), start.content().end(), bytes.begin());
    return bytes;
}

} // namespace fast
