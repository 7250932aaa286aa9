// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/decoding/readahead.h"

#include <algorithm>

namespace sfx {

namespace {

// Small enough to be still in the processor's cache when it is read.
constexpr std::size_t pieceSize = 256 * 1024;

} // namespace

ReadAhead::~ReadAhead()
{
    {
        const Locked lock(m_monitor);
        m_isCancelled = true;
        m_monitor.wake();
    }
    m_thread.join();
}

Status ReadAhead::open()
{
    static_cast<void>(m_thread.start(run, this));
    return Status::Ok;
}

void ReadAhead::run(void *self)
{
    while (static_cast<ReadAhead *>(self)->decodePiece()) {
    }
}

// Free bytes in the window.
std::size_t ReadAhead::freeSpace() const
{
    return m_input->windowSize() - static_cast<std::size_t>(m_decoded - m_read);
}

// Runs in the thread. Returns false if there is nothing more to do.
bool ReadAhead::decodePiece()
{
    std::size_t limit = 0;
    {
        const Locked lock(m_monitor);
        while (freeSpace() < pieceSize && m_decoded != m_read && !m_isCancelled) {
            m_monitor.wait();
        }
        if (m_isCancelled) {
            return false;
        }
        limit = std::min(freeSpace(), pieceSize);
    }
    ByteView piece;
    const Status status = m_input->next(limit, piece);
    const Locked lock(m_monitor);
    m_decoded += piece.size;
    m_status = status;
    m_hasEnded = status != Status::Ok || piece.size == 0;
    m_monitor.wake();
    return !m_hasEnded;
}

Status ReadAhead::next(std::size_t limit, ByteView &bytes)
{
    if (!m_thread.isStarted()) {
        return m_input->next(limit, bytes);
    }
    bytes = ByteView();
    if (limit == 0) {
        return Status::Ok;
    }
    const Locked lock(m_monitor);
    if (m_given != 0) {
        m_read += m_given;
        m_given = 0;
        m_monitor.wake();
    }
    while (m_decoded == m_read && !m_hasEnded) {
        m_monitor.wait();
    }
    if (m_decoded == m_read) {
        return m_status;
    }
    const std::size_t place = static_cast<std::size_t>(m_read % m_input->windowSize());
    m_given = static_cast<std::size_t>(
        std::min<std::uint64_t>({limit, m_decoded - m_read, m_input->windowSize() - place}));
    bytes = {m_input->window() + place, m_given};
    return Status::Ok;
}

} // namespace sfx
