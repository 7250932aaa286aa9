// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/core/parts.h"

#include "helpers/self-extractor/core/folderplan.h"
#include "helpers/self-extractor/core/lzma2blocks.h"
#include "helpers/self-extractor/core/methods.h"

#include <algorithm>
#include <cstring>

namespace sfx {

namespace {

// A shorter part costs more (its own window, files in pieces) than it gives.
constexpr std::uint64_t leastPart = 2 * 1024 * 1024;

bool isLzma2Alone(const CSzFolder &folder)
{
    return folder.NumCoders == 1 && folder.Coders[0].MethodID == method::Lzma2
        && folder.NumPackStreams == 1;
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

Status Parts::addFolder(const Archive &archive, std::uint32_t folder, bool splits)
{
    FolderPlan plan;
    Status status = readFolderPlan(archive.tables().db, folder, archive.source(),
                                   archive.packBase(), plan);
    if (status != Status::Ok) {
        return status;
    }
    const unsigned last = plan.folder.UnpackStream;
    Part part;
    part.folder = folder;
    part.unpackSize = plan.unpackSizes[last];
    if (part.unpackSize == 0) {
        return Status::Ok;
    }
    if (!splits || !isLzma2Alone(plan.folder)) {
        return add(part, windowSize(plan));
    }
    const std::uint64_t unpackEnd = part.unpackSize;
    const std::uint64_t packEnd = plan.packPositions[1] - plan.packPositions[0];
    Lzma2Blocks blocks(*plan.source, plan.packBase + plan.packPositions[0], packEnd,
                       windowSize(plan, 0, ~0ull));
    Lzma2Blocks::Place place;
    while (status == Status::Ok && blocks.next(place)) {
        const std::uint64_t size = place.unpacked - part.unpackBegin;
        if (size < leastPart) {
            continue;
        }
        if (place.unpacked >= unpackEnd) {
            break;
        }
        part.isWholeFolder = false;
        part.packSize = place.packed - part.packBegin;
        part.unpackSize = size;
        status = add(part, windowSize(plan, 0, size));
        part.packBegin = place.packed;
        part.unpackBegin = place.unpacked;
    }
    part.packSize = packEnd - part.packBegin;
    part.unpackSize = unpackEnd - part.unpackBegin;
    return status == Status::Ok ? add(part, windowSize(plan, 0, part.unpackSize)) : status;
}

Status Parts::find(const Archive &archive, bool splitsFolders)
{
    const CSzArEx &tables = archive.tables();
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

FilePieces::FilePieces(const Archive &archive, const Part &part)
    : m_tables(archive.tables()), m_part(part),
      m_base(m_tables.UnpackPositions[m_tables.FolderToFile[part.folder]]),
      m_next(m_tables.FolderToFile[part.folder])
{
}

bool FilePieces::next(FilePiece &piece)
{
    const std::uint64_t partEnd = m_part.unpackBegin + m_part.unpackSize;
    while (m_next < m_tables.FolderToFile[m_part.folder + 1]) {
        const std::uint32_t file = m_next;
        ++m_next;
        const std::uint64_t begin = m_tables.UnpackPositions[file] - m_base;
        const std::uint64_t end = m_tables.UnpackPositions[file + 1] - m_base;
        const std::uint64_t from = std::max(begin, m_part.unpackBegin);
        const std::uint64_t to = std::min(end, partEnd);
        if (from < to) {
            piece = {file, from - begin, to - from, end - begin};
            return true;
        }
    }
    return false;
}

} // namespace sfx
