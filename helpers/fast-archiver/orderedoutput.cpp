// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/fast-archiver/orderedoutput.h"

namespace fast {

OrderedOutput::OrderedOutput(ArchiveFile &archive, std::size_t memoryLimit)
    : m_archive(archive)
    , m_memoryLimit(memoryLimit)
{
}

Outcome<Done> OrderedOutput::write(std::size_t block, pe::ByteView bytes)
{
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [&] {
        return m_isAbandoned || block == m_turn || m_waitingBytes + bytes.size() <= m_memoryLimit;
    });
    if (m_isAbandoned) {
        return Failure{ExitStatus::Interrupted, {}};
    }
    if (block != m_turn) {
        pe::Bytes &waiting = m_waiting[block].bytes;
        waiting.insert(waiting.end(), bytes.begin(), bytes.end());
        m_waitingBytes += bytes.size();
        return Done{};
    }
    auto written = writeWaiting(block);
    return written.hasFailed() ? written : m_archive.append(bytes);
}

// Writes what earlier calls have left in memory for this block, whose turn it is.
Outcome<Done> OrderedOutput::writeWaiting(std::size_t block)
{
    const auto found = m_waiting.find(block);
    if (found == m_waiting.end()) {
        return Done{};
    }
    const pe::Bytes bytes = std::move(found->second.bytes);
    m_waiting.erase(found);
    m_waitingBytes -= bytes.size();
    m_changed.notify_all();
    return m_archive.append(bytes);
}

Outcome<Done> OrderedOutput::finish(std::size_t block)
{
    const std::lock_guard lock(m_mutex);
    if (m_isAbandoned) {
        return Failure{ExitStatus::Interrupted, {}};
    }
    m_waiting[block].isFinished = true;
    for (auto next = m_waiting.find(m_turn); next != m_waiting.end() && next->second.isFinished;
         next = m_waiting.find(m_turn)) {
        auto written = writeWaiting(m_turn);
        if (written.hasFailed()) {
            return written;
        }
        ++m_turn;
    }
    m_changed.notify_all();
    return Done{};
}

void OrderedOutput::abandon()
{
    const std::lock_guard lock(m_mutex);
    m_isAbandoned = true;
    m_archive.abandon();
    m_changed.notify_all();
}

} // namespace fast
