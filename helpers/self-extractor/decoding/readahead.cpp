// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/decoding/readahead.h"

#include <algorithm>

namespace sfx {

namespace {

// Small enough to be still in the processor's cache when it is read.
constexpr std::size_t pieceSize = 256 * 1024;
// A reader that had to wait goes on with so much. Woken for every piece, it would cost the decoder
// more time than a piece of Zstandard takes.
constexpr std::size_t batchSize = 1024 * 1024;

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

// Runs in the thread. Returns false if there is nothing more to do.
bool ReadAhead::decodePiece()
{
    std::size_t room = 0;
    {
        const Locked lock(m_monitor);
        while ((room = m_input->freeSpace(m_unread)) < pieceSize && m_unread != 0
               && !m_isCancelled) {
            // Woken after every small file, it would seldom find enough.
            m_enough = m_unread - std::min(m_unread, pieceSize - room);
            m_wanted = 1; // there is no room for more
            m_monitor.wake();
            m_monitor.wait();
        }
        if (m_isCancelled) {
            return false;
        }
    }
    ByteView piece;
    const Status status = m_input->next(std::min(room, pieceSize), piece);
    const Locked lock(m_monitor);
    append(piece);
    m_status = status;
    m_hasEnded = status != Status::Ok || piece.size == 0;
    if (m_unread >= m_wanted || m_hasEnded) {
        m_monitor.wake();
    }
    return !m_hasEnded;
}

void ReadAhead::append(const ByteView &piece)
{
    ByteView &last = m_parts[m_parts[1].size != 0 ? 1 : 0];
    if (last.size == 0) {
        last = piece;
    } else if (last.data + last.size == piece.data) {
        last.size += piece.size;
    } else {
        m_parts[1] = piece;
    }
    m_unread += piece.size;
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
        m_unread -= m_given;
        m_given = 0;
        if (m_unread <= m_enough) {
            m_monitor.wake();
        }
    }
    ByteView &part = m_parts[0];
    if (part.size == 0) {
        m_wanted = batchSize;
        while (m_unread < m_wanted && !m_hasEnded) {
            m_monitor.wait();
        }
    }
    if (part.size == 0) {
        return m_status;
    }
    m_given = std::min(limit, part.size);
    bytes = {part.data, m_given};
    part = {part.data + m_given, part.size - m_given};
    if (part.size == 0) {
        part = std::exchange(m_parts[1], ByteView());
    }
    return Status::Ok;
}

} // namespace sfx
