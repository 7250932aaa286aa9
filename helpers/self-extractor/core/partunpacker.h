// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/core/parts.h"
#include "helpers/self-extractor/core/seam.h"
#include "helpers/self-extractor/core/stream.h"
#include "helpers/self-extractor/core/unpacksink.h"

#include <atomic>

namespace sfx {

/// The content of a file, or of a piece of one, that has been handed to a sink.
struct WrittenPiece
{
    FilePiece piece; ///< of size 0: nothing
    std::uint32_t crc = 0;
};

/// The files that begin before a range or end behind it: at most one at each end, or one in all.
struct WrittenEnds
{
    WrittenPiece first;
    WrittenPiece last;
};

/// Decodes parts of an archive, one after the other, and hands the files' content to a sink. Each
/// thread has one.
class PartUnpacker
{
public:
    /// All three outlive this object. `stops` may be set by any thread; a part ends soon after with
    /// Cancelled.
    PartUnpacker(const Archive &archive, UnpackSink &sink, const std::atomic<bool> &stops)
        : m_archive(archive)
        , m_sink(sink)
        , m_stops(stops)
    {
    }

    /// Unpacks all of a part but its seams, which may be null where it has none. Files that lie in it
    /// as a whole are checked here; the others exist already, and come out of `ends`. Damaged: a CRC
    /// is wrong, or the data ends too early.
    Status unpack(const Part &part, bool readsAhead, Seam *before, Seam *behind, WrittenEnds &ends);
    /// As unpack(), for the seam before a part.
    Status unpackSeam(const Part &part, Seam &seam, WrittenEnds &ends);

private:
    Status unpackRange(const Range &range, WrittenEnds &ends);
    Status unpackWhole(const Entry &file, std::uint32_t index);
    Status unpackPiece(const Entry &file, const FilePiece &piece, std::uint32_t &crc);
    Status copy(std::uint64_t size, std::uint32_t &crc);

    const Archive &m_archive;
    UnpackSink &m_sink;
    const std::atomic<bool> &m_stops;
    Array<char16_t> m_path;
    Owned<Stream> m_chain;
};

} // namespace sfx
