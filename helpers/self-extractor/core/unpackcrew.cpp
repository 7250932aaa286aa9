// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/core/unpackcrew.h"

#include <algorithm>

namespace sfx {

namespace {

// Beside its dictionary: what the window holds beyond it, and the buffers of decoder and filters.
constexpr std::uint64_t workerBuffers = 6 * 1024 * 1024;
// A thread for less costs more than it gives.
constexpr std::uint64_t leastWork = 1024 * 1024;

} // namespace

unsigned UnpackCrew::workersFor(std::uint64_t totalBytes, const UnpackLimits &limits) const
{
    const std::uint64_t affordable = limits.memory / (m_parts.largestWindow() + workerBuffers);
    const std::uint64_t useful = std::min<std::uint64_t>(
        {limits.threads, maxWorkers, m_parts.size(), 1 + totalBytes / leastWork});
    return static_cast<unsigned>(std::max<std::uint64_t>(1, std::min(affordable, useful)));
}

UnpackCrew::~UnpackCrew()
{
    for (std::size_t i = 0; i < m_results.size(); ++i) {
        const Owned<Seam> owner(m_results[i].seam);
    }
}

Status UnpackCrew::allocate()
{
    if (!m_results.allocate(m_parts.size())) {
        return Status::NoMemory;
    }
    std::fill_n(m_results.data(), m_results.size(), Result());
    for (std::size_t i = 0; i < m_parts.size(); ++i) {
        if (m_parts[i].hasSeamBefore()) {
            m_results[i].seam = makeOwned<Seam>().release();
            if (m_results[i].seam == nullptr) {
                return Status::NoMemory;
            }
        }
    }
    return Status::Ok;
}

void UnpackCrew::run(void *worker)
{
    auto *self = static_cast<Worker *>(worker);
    self->crew->work(*self->sink);
}

void UnpackCrew::fail(Status status)
{
    const Locked lock(m_monitor);
    if (m_status == Status::Ok) {
        m_status = status;
    }
    m_stops = true;
    for (std::size_t i = 0; i < m_results.size(); ++i) {
        if (m_results[i].seam != nullptr) {
            m_results[i].seam->abandon();
        }
    }
}

Status UnpackCrew::unpackPart(PartUnpacker &unpacker, std::size_t index)
{
    const Part &part = m_parts[index];
    Seam *const behind = index + 1 < m_parts.size() ? m_results[index + 1].seam : nullptr;
    return unpacker.unpack(part, part.unpackSize >= m_leastReadAhead, m_results[index].seam, behind,
                           m_results[index].inBody);
}

void UnpackCrew::work(UnpackSink &sink)
{
    PartUnpacker unpacker(m_archive, sink, m_stops);
    while (!m_stops) {
        const std::size_t index = m_nextPart++;
        if (index >= m_parts.size()) {
            return;
        }
        const Status status = unpackPart(unpacker, index);
        if (status != Status::Ok) {
            fail(status);
        }
    }
}

Status UnpackCrew::unpack(std::uint64_t totalBytes, const UnpackLimits &limits)
{
    const Status allocated = allocate();
    if (allocated != Status::Ok) {
        return allocated;
    }
    const unsigned workers = workersFor(totalBytes, limits);
    const bool hasSpare = workers == 1 || 2 * workers <= limits.threads;
    m_leastReadAhead = hasSpare ? 0 : totalBytes / limits.threads;
    Worker others[maxWorkers - 1];
    for (unsigned i = 0; i + 1 < workers; ++i) {
        others[i].crew = this;
        others[i].sink = m_sink.another();
        if (!others[i].sink || !others[i].thread.start(run, &others[i])) {
            break; // those that there are do it all
        }
    }
    work(m_sink);
    for (Worker &other : others) {
        other.thread.join();
    }
    return m_status == Status::Ok ? unpackSeams() : m_status;
}

Status UnpackCrew::unpackSeams()
{
    PartUnpacker unpacker(m_archive, m_sink, m_stops);
    Status status = Status::Ok;
    for (std::size_t i = 0; status == Status::Ok && i < m_parts.size(); ++i) {
        if (m_results[i].seam != nullptr) {
            status = unpacker.unpackSeam(m_parts[i], *m_results[i].seam, m_results[i].inSeam);
        }
    }
    return status;
}

} // namespace sfx
