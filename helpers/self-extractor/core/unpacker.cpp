// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/core/unpacker.h"

#include "helpers/self-extractor/core/joincrc.h"
#include "helpers/self-extractor/core/unpackcrew.h"

namespace sfx {

namespace {

/// The steps before and after the decoding, which are done in one thread.
class Unpacker
{
public:
    Unpacker(Archive &archive, UnpackSink &sink) : m_archive(archive), m_sink(sink) {}

    Status run(std::uint64_t totalBytes, const UnpackLimits &limits);

private:
    Status makeEmptyEntries();
    Status beginDividedFiles(const Parts &parts);
    Status beginDividedFiles(const Range &range);
    Status endDividedFiles(const UnpackCrew &crew, const Parts &parts);
    Status addPiece(const WrittenPiece &written, WrittenPiece &whole);
    Status endDividedFile(const WrittenPiece &whole);
    Status finishFolders();

    Archive &m_archive;
    UnpackSink &m_sink;
};

Status Unpacker::run(std::uint64_t totalBytes, const UnpackLimits &limits)
{
    Parts parts;
    Status status = parts.find(m_archive, limits.threads > 1);
    if (status == Status::Ok) {
        status = makeEmptyEntries();
    }
    if (status == Status::Ok) {
        status = beginDividedFiles(parts);
    }
    UnpackCrew crew(m_archive, parts, m_sink);
    if (status == Status::Ok) {
        status = crew.unpack(totalBytes, limits);
    }
    if (status == Status::Ok) {
        status = endDividedFiles(crew, parts);
    }
    return status == Status::Ok ? finishFolders() : status;
}

// Folders, and files without content; the others must have a CRC.
Status Unpacker::makeEmptyEntries()
{
    const CSzArEx &tables = m_archive.tables();
    Status status = Status::Ok;
    for (std::uint32_t i = 0; status == Status::Ok && i < m_archive.entryCount(); ++i) {
        Entry entry;
        status = m_archive.entry(i, entry);
        if (status != Status::Ok) {
            return status;
        }
        if (entry.isFolder) {
            status = m_sink.makeFolder(entry);
        } else if (entry.size == 0) {
            status = m_sink.beginFile(entry);
            if (status == Status::Ok) {
                status = m_sink.endFile(entry);
            }
        } else if (!SzBitWithVals_Check(&tables.CRCs, i)
                   || tables.FileToFolder[i] >= tables.db.NumFolders) {
            status = Status::Damaged;
        }
    }
    return status;
}

// Files that begin in one part and end in another, so that no part has to wait for one before it.
Status Unpacker::beginDividedFiles(const Parts &parts)
{
    Status status = Status::Ok;
    for (std::size_t i = 0; status == Status::Ok && i < parts.size(); ++i) {
        if (parts[i].hasSeamBefore()) {
            status = beginDividedFiles(seamBefore(parts[i]));
        }
        if (status == Status::Ok) {
            status = beginDividedFiles(bodyOf(parts[i]));
        }
    }
    return status;
}

Status Unpacker::beginDividedFiles(const Range &range)
{
    FilePieces pieces(m_archive, range);
    FilePiece piece;
    while (pieces.next(piece)) {
        if (piece.isWholeFile() || piece.offset != 0) {
            continue;
        }
        Entry file;
        Status status = m_archive.entry(piece.file, file);
        if (status == Status::Ok) {
            status = m_sink.beginFile(file);
        }
        if (status == Status::Ok) {
            status = m_sink.pauseFile();
        }
        if (status != Status::Ok) {
            return status;
        }
    }
    return Status::Ok;
}

Status Unpacker::endDividedFile(const WrittenPiece &whole)
{
    if (whole.crc != m_archive.tables().CRCs.Vals[whole.piece.file]) {
        return Status::Damaged;
    }
    Entry file;
    Status status = m_archive.entry(whole.piece.file, file);
    if (status == Status::Ok) {
        status = m_sink.resumeFile(file, whole.piece.fileSize);
    }
    return status == Status::Ok ? m_sink.endFile(file) : status;
}

// The pieces come in the order of the archive, those of one file behind each other.
Status Unpacker::addPiece(const WrittenPiece &written, WrittenPiece &whole)
{
    if (written.piece.size == 0) {
        return Status::Ok;
    }
    if (written.piece.offset == 0) {
        whole = written;
    } else {
        whole.crc = joinCrc(whole.crc, written.crc, written.piece.size);
        whole.piece.size += written.piece.size;
    }
    return whole.piece.isWholeFile() ? endDividedFile(whole) : Status::Ok;
}

Status Unpacker::endDividedFiles(const UnpackCrew &crew, const Parts &parts)
{
    WrittenPiece whole;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        const UnpackCrew::Result &result = crew.result(i);
        for (const WrittenPiece *written : {&result.inSeam.first, &result.inSeam.last,
                                            &result.inBody.first, &result.inBody.last}) {
            const Status status = addPiece(*written, whole);
            if (status != Status::Ok) {
                return status;
            }
        }
    }
    return Status::Ok;
}

Status Unpacker::finishFolders()
{
    for (std::uint32_t i = m_archive.entryCount(); i-- > 0;) {
        Entry entry;
        Status status = m_archive.entry(i, entry);
        if (status == Status::Ok && entry.isFolder) {
            status = m_sink.finishFolder(entry);
        }
        if (status != Status::Ok) {
            return status;
        }
    }
    return Status::Ok;
}

} // namespace

Status unpack(Archive &archive, UnpackSink &sink, std::uint64_t totalBytes,
              const UnpackLimits &limits)
{
    const Status status = sink.begin(totalBytes, archive.entryCount());
    return status == Status::Ok ? Unpacker(archive, sink).run(totalBytes, limits) : status;
}

} // namespace sfx
