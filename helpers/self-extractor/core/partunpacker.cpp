// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/core/partunpacker.h"

#include "helpers/self-extractor/core/filteredblock.h"
#include "helpers/self-extractor/core/folderchain.h"

#include "7zCrc.h"

#include <algorithm>

namespace sfx {

namespace {

// What is decoded and written at a time.
constexpr std::size_t pieceSize = 256 * 1024;

} // namespace

// From the decoder to the sink.
Status PartUnpacker::copy(std::uint64_t size, std::uint32_t &crc)
{
    Status status = Status::Ok;
    std::uint32_t sum = CRC_INIT_VAL;
    while (status == Status::Ok && size != 0) {
        const std::size_t wanted
            = static_cast<std::size_t>(std::min<std::uint64_t>(size, pieceSize));
        Bytes piece;
        status = m_stops ? Status::Cancelled : m_chain->next(wanted, piece);
        if (status == Status::Ok && piece.size == 0) {
            status = Status::Damaged;
        }
        if (status == Status::Ok) {
            sum = CrcUpdate(sum, piece.data, piece.size);
            status = m_sink.write(piece.data, piece.size);
            size -= piece.size;
        }
    }
    crc = CRC_GET_DIGEST(sum);
    return status;
}

Status PartUnpacker::unpackWhole(const Entry &file, std::uint32_t index)
{
    Status status = m_sink.beginFile(file);
    std::uint32_t crc = 0;
    if (status == Status::Ok) {
        status = copy(file.size, crc);
    }
    if (status == Status::Ok && crc != m_archive.tables().CRCs.Vals[index]) {
        status = Status::Damaged;
    }
    return status == Status::Ok ? m_sink.endFile(file) : status;
}

Status PartUnpacker::unpackPiece(const Entry &file, const FilePiece &piece, std::uint32_t &crc)
{
    Status status = m_sink.resumeFile(file, piece.offset);
    if (status == Status::Ok) {
        status = copy(piece.size, crc);
    }
    return status == Status::Ok ? m_sink.pauseFile() : status;
}

Status PartUnpacker::unpackRange(const Range &range, WrittenEnds &ends)
{
    Status status = Status::Ok;
    FilePieces pieces(m_archive, range);
    FilePiece piece;
    while (status == Status::Ok && pieces.next(piece)) {
        Entry file;
        status = m_archive.entry(piece.file, file, m_path);
        if (status != Status::Ok) {
            return status;
        }
        if (piece.isWholeFile()) {
            status = unpackWhole(file, piece.file);
            continue;
        }
        WrittenPiece &written = piece.offset != 0 ? ends.first : ends.last;
        written.piece = piece;
        status = unpackPiece(file, piece, written.crc);
    }
    return status;
}

Status PartUnpacker::unpack(const Part &part, bool readsAhead, Seam *before, Seam *behind,
                            WrittenEnds &ends)
{
    m_chain = Owned<Stream>(); // the old window goes before the new one comes
    Status status = openPart(m_archive, part, readsAhead, m_chain);
    FilteredBlock *filtered = nullptr;
    if (status == Status::Ok && part.kind == Part::Kind::FilteredBlock) {
        Owned<FilteredBlock> block = makeOwned<FilteredBlock>(std::move(m_chain), part.unpackBegin);
        if (!block) {
            return Status::NoMemory;
        }
        status = block->open(before);
        filtered = &*block;
        m_chain = Owned<Stream>(std::move(block));
    }
    if (status == Status::Ok) {
        status = unpackRange(bodyOf(part), ends);
    }
    if (status == Status::Ok && filtered != nullptr && behind != nullptr) {
        status = filtered->finish(*behind);
    }
    m_chain = Owned<Stream>();
    return status;
}

Status PartUnpacker::unpackSeam(const Part &part, Seam &seam, WrittenEnds &ends)
{
    seam.close(part.unpackBegin);
    m_chain = makeOwned<MemoryStream>(seam.bytes(), Seam::size);
    return m_chain ? unpackRange(seamBefore(part), ends) : Status::NoMemory;
}

} // namespace sfx
