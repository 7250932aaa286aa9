// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/core/partunpacker.h"
#include "helpers/self-extractor/core/thread.h"
#include "helpers/self-extractor/core/unpacker.h"

namespace sfx {

/// Some threads that share the parts of an archive among them: each takes the next one that nobody
/// has begun. The first that fails stops the others.
class UnpackCrew
{
public:
    /// More gain nothing: the disk is the limit then.
    static constexpr unsigned maxWorkers = 8;

    /// All three outlive this object.
    UnpackCrew(const Archive &archive, const Parts &parts, UnpackSink &sink)
        : m_archive(archive), m_parts(parts), m_sink(sink)
    {
    }

    /// Returns when all is done, or what the first failure was. To be called once.
    Status unpack(std::uint64_t totalBytes, const UnpackLimits &limits);

    /// Two for each part: the pieces of files that begin before it and that end behind it.
    std::size_t pieceCount() const { return m_pieces.size(); }
    const WrittenPiece &piece(std::size_t index) const { return m_pieces[index]; }

private:
    struct Worker {
        UnpackCrew *crew = nullptr;
        Owned<UnpackSink> sink;
        Thread thread;
    };

    unsigned workersFor(std::uint64_t totalBytes, const UnpackLimits &limits) const;
    static void run(void *worker);
    void work(UnpackSink &sink);
    void fail(Status status);

    const Archive &m_archive;
    const Parts &m_parts;
    UnpackSink &m_sink;
    bool m_readsAhead = false;
    Array<WrittenPiece> m_pieces;
    std::atomic<std::size_t> m_nextPart = 0;
    std::atomic<bool> m_stops = false;
    Monitor m_monitor; // for the status
    Status m_status = Status::Ok;
};

} // namespace sfx
