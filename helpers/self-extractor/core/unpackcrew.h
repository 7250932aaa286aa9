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
        : m_archive(archive)
        , m_parts(parts)
        , m_sink(sink)
    {
    }
    UnpackCrew(const UnpackCrew &) = delete;
    UnpackCrew &operator=(const UnpackCrew &) = delete;
    ~UnpackCrew();

    /// Returns when all is done, or what the first failure was. To be called once.
    Status unpack(std::uint64_t totalBytes, const UnpackLimits &limits);

    /// What has been written of the files that are in several parts, for one of them.
    struct Result
    {
        Seam *seam = nullptr; ///< before the part, or none
        WrittenEnds inSeam;
        WrittenEnds inBody;
    };
    const Result &result(std::size_t part) const { return m_results[part]; }

private:
    struct Worker
    {
        UnpackCrew *crew = nullptr;
        Owned<UnpackSink> sink;
        Thread thread;
    };

    unsigned workersFor(std::uint64_t totalBytes, const UnpackLimits &limits) const;
    Status allocate();
    static void run(void *worker);
    void work(UnpackSink &sink);
    Status unpackPart(PartUnpacker &unpacker, std::size_t index);
    void fail(Status status);
    Status unpackSeams();

    const Archive &m_archive;
    const Parts &m_parts;
    UnpackSink &m_sink;
    // A part of this size has a processor more for itself, now or when the others are done.
    std::uint64_t m_leastReadAhead = 0;
    Array<Result> m_results; // of each part; owns the seams
    std::atomic<std::size_t> m_nextPart = 0;
    std::atomic<bool> m_stops = false;
    Monitor m_monitor; // for the status
    Status m_status = Status::Ok;
};

} // namespace sfx
