// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/unpacking/unpackthreads.h"

#include "helpers/self-extractor/base/crc32.h"
#include "helpers/self-extractor/base/thread.h"
#include "helpers/self-extractor/decoding/decoderchain.h"

#include <algorithm>
#include <atomic>

namespace sfx {

namespace {

// Memory of one decoder besides its window: the rest of it, and the buffers of decoder and filters.
constexpr std::uint64_t decoderBuffers = 6 * 1024 * 1024;
// A thread for less than this costs more than it gains.
constexpr std::uint64_t leastWork = 1024 * 1024;
// What is decoded and written at a time.
constexpr std::size_t pieceSize = 256 * 1024;

// The memory for decoding a solid block.
std::uint64_t memoryFor(const CoderGraph &graph)
{
    return windowSize(graph) + decoderBuffers;
}

// The threads and their common data: the number of the next solid block, the memory in use, and the
// first failure.
class UnpackThreads
{
public:
    UnpackThreads(const Archive &archive, UnpackSink &sink, const UnpackLimits &limits)
        : m_archive(archive)
        , m_sink(sink)
        , m_limits(limits)
    {
    }

    Status run(std::uint64_t totalBytes);

private:
    // What a thread has: of the memory that all share, and the window of its last solid block.
    struct ThreadMemory
    {
        std::uint64_t size = 0; // with the spare window
        Array<std::uint8_t> spareWindow;
    };

    std::uint32_t endOfTaken(std::uint32_t solidBlock) const;
    Status measure();
    unsigned countThreads(std::uint64_t totalBytes) const;
    static void work(void *self);
    void unpackNextBlocks(UnpackSink &sink);
    Status unpackFiles(std::uint32_t solidBlock, std::uint32_t end, const CoderGraph &graph,
                       UnpackSink &sink) const;
    Status unpackFile(const Entry &file, std::uint32_t index, Stream &decoder,
                      UnpackSink &sink) const;
    void exchangeMemory(ThreadMemory &memory, std::uint64_t size);
    void fail(Status status);

    const Archive &m_archive;
    UnpackSink &m_sink;
    const UnpackLimits &m_limits;
    std::uint32_t m_solidBlocks = 0;          // number of those with content
    std::uint64_t m_leastMemory = UINT64_MAX; // of all solid blocks, in bytes
    std::uint64_t m_leastReadAhead = 0;       // smaller solid blocks do not read ahead
    std::atomic<std::uint32_t> m_next = 0;    // the next solid block to be unpacked
    Thread m_others[maxUnpackThreads - 1];
    std::atomic<bool> m_stops = false;
    Monitor m_monitor; // protects the members below
    bool m_isSinkTaken = false;
    std::uint64_t m_memoryInUse = 0;
    Status m_status = Status::Ok;
};

// The index after the last file of the solid block that has content and is not skipped; 0 if there is
// none.
std::uint32_t UnpackThreads::endOfTaken(std::uint32_t solidBlock) const
{
    const CSzArEx &tables = m_archive.tables();
    const std::uint32_t first = tables.FolderToFile[solidBlock];
    for (std::uint32_t end = tables.FolderToFile[solidBlock + 1]; end > first; --end) {
        if (tables.UnpackPositions[end - 1] != tables.UnpackPositions[end]
            && m_limits.takes(end - 1)) {
            return end;
        }
    }
    return 0;
}

Status UnpackThreads::measure()
{
    for (std::uint32_t i = 0; i < m_archive.tables().db.NumFolders; ++i) {
        if (endOfTaken(i) == 0) {
            continue;
        }
        CoderGraph graph;
        const Status status = m_archive.coderGraph(i, graph);
        if (status != Status::Ok) {
            return status;
        }
        ++m_solidBlocks;
        m_leastMemory = std::min(m_leastMemory, memoryFor(graph));
    }
    return Status::Ok;
}

unsigned UnpackThreads::countThreads(std::uint64_t totalBytes) const
{
    const std::uint64_t affordable = m_limits.memory / m_leastMemory;
    const std::uint64_t useful = std::min<std::uint64_t>(
        {m_limits.threads, maxUnpackThreads, m_solidBlocks, 1 + totalBytes / leastWork});
    return static_cast<unsigned>(std::max<std::uint64_t>(1, std::min(affordable, useful)));
}

Status UnpackThreads::run(std::uint64_t totalBytes)
{
    if (m_archive.tables().FolderToFile == nullptr) {
        return Status::Ok; // packed streams, but no files listed
    }
    const Status measured = measure();
    if (measured != Status::Ok) {
        return measured;
    }
    const unsigned threads = countThreads(totalBytes);
    // Without a processor to spare, only a large solid block reads ahead: its decoder is still busy
    // when the others have finished.
    const bool hasSpare = threads == 1 || 2 * threads <= m_limits.threads;
    m_leastReadAhead = hasSpare ? 0 : totalBytes / m_limits.threads;
    runOnThreads(m_others, threads - 1, work, this);
    return m_status;
}

// Runs on each thread. One of them has the sink itself; a thread without a sink leaves its work to the
// others.
void UnpackThreads::work(void *self)
{
    auto *threads = static_cast<UnpackThreads *>(self);
    Owned<UnpackSink> own;
    threads->m_monitor.enter();
    const bool isFirst = !std::exchange(threads->m_isSinkTaken, true);
    if (!isFirst) {
        own = threads->m_sink.another();
    }
    threads->m_monitor.leave();
    if (isFirst || own) {
        threads->unpackNextBlocks(isFirst ? threads->m_sink : *own);
    }
}

void UnpackThreads::unpackNextBlocks(UnpackSink &sink)
{
    const std::uint32_t count = m_archive.tables().db.NumFolders;
    ThreadMemory memory;
    std::uint32_t solidBlock = 0;
    do {
        CoderGraph graph;
        solidBlock = m_next++;
        const std::uint32_t end = solidBlock < count ? endOfTaken(solidBlock) : 0;
        Status status = end != 0 ? m_archive.coderGraph(solidBlock, graph) : Status::Ok;
        graph.spareWindow = &memory.spareWindow;
        const bool unpacks = end != 0 && status == Status::Ok;
        exchangeMemory(memory, unpacks ? memoryFor(graph) : 0);
        if (unpacks && !m_stops.load()) {
            status = unpackFiles(solidBlock, end, graph, sink);
        }
        if (status != Status::Ok) {
            fail(status);
        }
    } while (solidBlock < count);
}

void UnpackThreads::fail(Status status)
{
    const Locked lock(m_monitor);
    if (m_status == Status::Ok) {
        m_status = status;
    }
    m_stops = true;
    m_monitor.wake();
}

// Gives back what the thread has, and takes `size` when other threads have given back enough. One
// thread never waits. The spare window stays only if the new size includes it.
void UnpackThreads::exchangeMemory(ThreadMemory &memory, std::uint64_t size)
{
    const Locked lock(m_monitor);
    m_memoryInUse -= memory.size;
    m_monitor.wake();
    for (;;) {
        const bool waits = m_memoryInUse != 0 && m_memoryInUse + size > m_limits.memory
            && !m_stops.load();
        if (waits || memory.spareWindow.size() > size) {
            memory.spareWindow = Array<std::uint8_t>();
        }
        if (!waits) {
            break;
        }
        m_monitor.wait();
    }
    memory.size = size;
    m_memoryInUse += size;
}

Status UnpackThreads::unpackFiles(std::uint32_t solidBlock, std::uint32_t end,
                                  const CoderGraph &graph, UnpackSink &sink) const
{
    Owned<Stream> decoder;
    Array<char16_t> path;
    const std::uint64_t size = graph.unpackSizes[graph.wiring.UnpackStream];
    Status status = openDecoderChain(graph, size >= m_leastReadAhead, decoder);
    std::uint32_t i = m_archive.tables().FolderToFile[solidBlock];
    for (; status == Status::Ok && i < end; ++i) {
        Entry file;
        status = m_archive.entry(i, file, path);
        if (status == Status::Ok && file.size != 0) {
            status = unpackFile(file, i, *decoder, sink);
        }
    }
    if (status == Status::Ok) {
        ByteView rest;
        status = decoder->next(1, rest); // a decoder may check that its data end here
    }
    return status;
}

Status UnpackThreads::unpackFile(const Entry &file, std::uint32_t index, Stream &decoder,
                                 UnpackSink &sink) const
{
    const bool isTaken = m_limits.takes(index); // others are only decoded
    Status status = isTaken ? sink.beginFile(file) : Status::Ok;
    std::uint32_t sum = 0;
    std::uint64_t left = file.size;
    while (status == Status::Ok && left != 0) {
        ByteView piece;
        status = m_stops.load()
            ? Status::Cancelled
            : decoder.next(static_cast<std::size_t>(std::min<std::uint64_t>(left, pieceSize)),
                           piece);
        if (status == Status::Ok && piece.size == 0) {
            status = Status::Damaged;
        }
        if (status == Status::Ok) {
            sum = crc32(sum, piece.data, piece.size);
            status = isTaken ? sink.write(piece.data, piece.size) : Status::Ok;
            left -= piece.size;
        }
    }
    if (status == Status::Ok && sum != m_archive.tables().CRCs.Vals[index]) {
        status = Status::Damaged;
    }
    return status == Status::Ok && isTaken ? sink.endFile(file) : status;
}

} // namespace

Status unpackSolidBlocks(const Archive &archive, UnpackSink &sink, std::uint64_t totalBytes,
                         const UnpackLimits &limits)
{
    return UnpackThreads(archive, sink, limits).run(totalBytes);
}

} // namespace sfx
