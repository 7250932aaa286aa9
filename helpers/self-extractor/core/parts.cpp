// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/core/parts.h"

#include "helpers/self-extractor/core/folderplan.h"
#include "helpers/self-extractor/core/lzma2blocks.h"
#include "helpers/self-extractor/core/methods.h"
#include "helpers/self-extractor/core/seam.h"

#include <algorithm>

namespace sfx {

namespace {

// A shorter part costs more (its own window, files in pieces) than it gives.
constexpr std::uint64_t leastPart = 2 * 1024 * 1024;

unsigned firstInputOf(const CSzFolder &folder, unsigned coder)
{
    unsigned input = 0;
    for (unsigned i = 0; i < coder; ++i) {
        input += folder.Coders[i].NumStreams;
    }
    return input;
}

bool isLzma2(const CSzCoderInfo &coder)
{
    return coder.MethodID == method::Lzma2 && coder.NumStreams == 1;
}

// Only LZMA2, or LZMA2 and then the filter for x86: the part's kind and decoder. False: other coders.
bool findDecoder(const FolderPlan &plan, Part &part)
{
    const CSzFolder &folder = plan.folder;
    const unsigned last = folder.UnpackStream;
    if (folder.NumPackStreams != 1) {
        return false;
    }
    if (folder.NumCoders == 1) {
        part.kind = Part::Kind::Block;
        return isLzma2(folder.Coders[0]);
    }
    if (folder.NumCoders != 2 || folder.NumBonds != 1) {
        return false;
    }
    const unsigned other = 1 - last;
    part.kind = Part::Kind::FilteredBlock;
    part.decoder = static_cast<std::uint8_t>(other);
    const CSzCoderInfo &filter = folder.Coders[last];
    return isLzma2(folder.Coders[other]) && filter.MethodID == method::X86 && filter.NumStreams == 1
        && filter.PropsSize == 0 && folder.Bonds[0].InIndex == firstInputOf(folder, last)
        && folder.Bonds[0].OutIndex == other && folder.PackStreams[0] == firstInputOf(folder, other)
        && plan.unpackSizes[other] == plan.unpackSizes[last];
}

} // namespace

Status Parts::add(const Part &part, std::uint64_t window)
{
    if (m_size == m_parts.size()) {
        Array<Part> larger;
        if (!larger.allocate(m_size == 0 ? 16 : m_size * 2)) {
            return Status::NoMemory;
        }
        std::copy_n(m_parts.data(), m_size, larger.data());
        m_parts = std::move(larger);
    }
    m_parts[m_size] = part;
    ++m_size;
    m_largestWindow = std::max(m_largestWindow, window);
    return Status::Ok;
}

// Cuts the folder where LZMA2 starts afresh. One that has no such place is added as it is.
Status Parts::addBlocks(const FolderPlan &plan, Part whole)
{
    const std::uint64_t packSize = plan.packPositions[1] - plan.packPositions[0];
    Lzma2Blocks blocks(*plan.source, plan.packBase + plan.packPositions[0], packSize,
                       windowSize(plan, whole.decoder, ~0ull));
    Lzma2Blocks::Place place;
    Part rest = whole;
    rest.packSize = packSize;
    while (blocks.next(place) && place.unpacked < whole.unpackSize) {
        const std::uint64_t size = place.unpacked - rest.unpackBegin;
        if (size < leastPart || whole.unpackSize - place.unpacked < leastPart) {
            continue;
        }
        Part block = rest;
        block.packSize = place.packed - rest.packBegin;
        block.unpackSize = size;
        block.isLast = false;
        const Status status = add(block, windowSize(plan, whole.decoder, size));
        if (status != Status::Ok) {
            return status;
        }
        rest.packBegin += block.packSize;
        rest.packSize -= block.packSize;
        rest.unpackBegin += size;
        rest.unpackSize -= size;
    }
    if (rest.unpackBegin == 0) {
        rest.kind = Part::Kind::Folder;
    }
    return add(rest, windowSize(plan, whole.decoder, rest.unpackSize));
}

Status Parts::addFolder(const Archive &archive, std::uint32_t folder, bool splits)
{
    FolderPlan plan;
    const Status status
        = readFolderPlan(archive.tables().db, folder, archive.source(), archive.packBase(), plan);
    if (status != Status::Ok) {
        return status;
    }
    Part part;
    part.folder = folder;
    part.unpackSize = plan.unpackSizes[plan.folder.UnpackStream];
    if (part.unpackSize == 0) {
        return Status::Ok;
    }
    Part blocks = part;
    return splits && findDecoder(plan, blocks) ? addBlocks(plan, blocks)
                                               : add(part, windowSize(plan));
}

Status Parts::find(const Archive &archive, bool splitsFolders)
{
    const CSzArEx &tables = archive.tables();
    if (tables.FolderToFile == nullptr) {
        return Status::Ok; // folders, and no word of files
    }
    for (std::uint32_t i = 0; i < tables.db.NumFolders; ++i) {
        if (tables.FolderToFile[i] == tables.FolderToFile[i + 1]) {
            continue; // nobody wants its content
        }
        const Status status = addFolder(archive, i, splitsFolders);
        if (status != Status::Ok) {
            return status;
        }
    }
    return Status::Ok;
}

Range bodyOf(const Part &part)
{
    Range range{part.folder, part.unpackBegin, part.unpackBegin + part.unpackSize};
    if (part.hasSeamBefore()) {
        range.begin += Seam::behind;
    }
    if (part.hasSeamBehind()) {
        range.end -= Seam::before;
    }
    return range;
}

Range seamBefore(const Part &part)
{
    return {part.folder, part.unpackBegin - Seam::before, part.unpackBegin + Seam::behind};
}

FilePieces::FilePieces(const Archive &archive, const Range &range)
    : m_tables(archive.tables())
    , m_range(range)
    , m_base(m_tables.UnpackPositions[m_tables.FolderToFile[range.folder]])
    , m_next(m_tables.FolderToFile[range.folder])
{
}

bool FilePieces::next(FilePiece &piece)
{
    while (m_next < m_tables.FolderToFile[m_range.folder + 1]) {
        const std::uint32_t file = m_next;
        ++m_next;
        const std::uint64_t begin = m_tables.UnpackPositions[file] - m_base;
        const std::uint64_t end = m_tables.UnpackPositions[file + 1] - m_base;
        const std::uint64_t from = std::max(begin, m_range.begin);
        const std::uint64_t to = std::min(end, m_range.end);
        if (from < to) {
            piece = {file, from - begin, to - from, end - begin};
            return true;
        }
    }
    return false;
}

} // namespace sfx
