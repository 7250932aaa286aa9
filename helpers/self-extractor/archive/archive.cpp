// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/archive/archive.h"

#include "helpers/self-extractor/archive/entryname.h"
#include "helpers/self-extractor/archive/lookstream.h"
#include "helpers/self-extractor/base/crc32.h"
#include "helpers/self-extractor/base/littleendian.h"

namespace sfx {

namespace {

constexpr std::size_t startHeaderSize = k7zStartHeaderSize;

// Read-only, hidden, system and archive: what a program may set, and what means the same on every
// disk. The other bits tell how the file was stored where it was packed: compressed, encrypted,
// sparse, offline, in a cloud. They are dropped, and so is the mark of a reparse point (0x400):
// cloud drives and disks with deduplication set it on ordinary files, and the archive holds their
// content.
constexpr std::uint32_t keptAttributes = 0x01 | 0x02 | 0x04 | 0x20;
// 7-Zip's mark that the upper half contains a Unix file mode.
constexpr std::uint32_t unixExtension = 0x8000;
constexpr std::uint32_t unixTypeMask = 0170000;
constexpr std::uint32_t unixFolder = 0040000;
constexpr std::uint32_t unixFile = 0100000;

bool isPlain(std::uint32_t attributes)
{
    if ((attributes & unixExtension) == 0) {
        return true;
    }
    const std::uint32_t type = (attributes >> 16) & unixTypeMask;
    return type == 0 || type == unixFolder || type == unixFile;
}

Status statusOf(SRes result)
{
    switch (result) {
    case SZ_OK:
        return Status::Ok;
    case SZ_ERROR_MEM:
        return Status::NoMemory;
    case SZ_ERROR_UNSUPPORTED:
        return Status::Unsupported;
    case SZ_ERROR_READ:
        return Status::ReadFailed;
    default:
        return Status::Damaged;
    }
}

} // namespace

Archive::Archive(ByteSource &source) : m_source(source), m_memory(headerBudget)
{
    SzArEx_Init(&m_tables);
}

Archive::~Archive()
{
    SzArEx_Free(&m_tables, m_memory.interface());
}

Status Archive::open(std::uint64_t offset)
{
    prepareCrc32();
    m_offset = offset;
    std::uint8_t start[startHeaderSize];
    const std::uint64_t left = offset <= m_source.size() ? m_source.size() - offset : 0;
    if (left < sizeof start || !m_source.readAt(offset, start, sizeof start)) {
        return Status::Damaged;
    }
    const std::uint64_t headerOffset = readU64(start + 12);
    const std::uint64_t headerSize = readU64(start + 20);
    // An unfinished archive has no header; a truncated one has lost it.
    if (headerSize == 0 || headerOffset > left - sizeof start
        || headerSize > left - sizeof start - headerOffset) {
        return Status::Damaged;
    }
    if (headerSize > maxHeaderSize) {
        return Status::Unsupported;
    }
    LookStream stream(m_source, offset, sizeof start + headerOffset + headerSize);
    if (!stream.allocate()) {
        return Status::NoMemory;
    }
    const Status status = statusOf(
        SzArEx_Open(&m_tables, stream.interface(), m_memory.interface(), m_memory.interface()));
    if (status == Status::Ok && m_tables.NumFiles != 0 && m_tables.FileNameOffsets == nullptr) {
        return Status::Damaged;
    }
    return status;
}

Status Archive::entry(std::uint32_t index, Entry &entry, Array<char16_t> &path) const
{
    const std::size_t units = SzArEx_GetFileNameUtf16(&m_tables, index, nullptr);
    if (units == 0 || units - 1 > maxPathSize) {
        return Status::UnsafeName;
    }
    if (units > path.size() && !path.allocate(units + 256)) {
        return Status::NoMemory;
    }
    SzArEx_GetFileNameUtf16(&m_tables, index, reinterpret_cast<UInt16 *>(path.data()));
    entry = Entry();
    entry.path = path.data();
    entry.pathSize = units - 1;
    entry.isFolder = SzArEx_IsDir(&m_tables, index);
    entry.size = SzArEx_GetFileSize(&m_tables, index);
    if (!isSafePath(entry.path, entry.pathSize)) {
        return Status::UnsafeName;
    }
    if (SzBitWithVals_Check(&m_tables.MTime, index)) {
        const CNtfsFileTime &time = m_tables.MTime.Vals[index];
        entry.hasModified = true;
        entry.modified = (static_cast<std::uint64_t>(time.High) << 32) | time.Low;
    }
    if (SzBitWithVals_Check(&m_tables.Attribs, index)) {
        const std::uint32_t attributes = m_tables.Attribs.Vals[index];
        if (!isPlain(attributes)) {
            return Status::Unsupported;
        }
        entry.attributes = attributes & keptAttributes;
    }
    return Status::Ok;
}

Status Archive::coderGraph(std::uint32_t solidBlock, CoderGraph &graph) const
{
    return readCoderGraph(m_tables.db, solidBlock, m_source, packBase(), graph);
}

} // namespace sfx
