// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/core/readahead.h"

#include <cstring>

namespace sfx {

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
    if (!m_buffer.allocate(pieceCount * pieceSize)) {
        return Status::NoMemory;
    }
    static_cast<void>(m_thread.start(run, this));
    return Status::Ok;
}

void ReadAhead::run(void *self)
{
    while (static_cast<ReadAhead *>(self)->fillPiece()) {
    }
}

// In the thread. False: nothing more is to be done.
bool ReadAhead::fillPiece()
{
    unsigned index = 0;
    {
        const Locked lock(m_monitor);
        while (m_filled - m_emptied == pieceCount && !m_isCancelled) {
            m_monitor.wait();
        }
        if (m_isCancelled) {
            return false;
        }
        index = m_filled % pieceCount;
    }
    std::size_t got = 0;
    const Status status = readFully(*m_input, m_buffer.data() + index * pieceSize, pieceSize, got);
    const Locked lock(m_monitor);
    m_sizes[index] = got;
    ++m_filled;
    m_status = status;
    m_hasEnded = status != Status::Ok || got != pieceSize;
    m_monitor.wake();
    return !m_hasEnded;
}

// Gives back the piece that has been read and waits for another. False: that was the last one.
bool ReadAhead::nextPiece()
{
    const Locked lock(m_monitor);
    if (m_hasPiece) {
        ++m_emptied;
        m_monitor.wake();
    }
    while (m_filled == m_emptied && !m_hasEnded) {
        m_monitor.wait();
    }
    m_hasPiece = m_filled != m_emptied;
    if (m_hasPiece) {
        const unsigned index = m_emptied % pieceCount;
        m_place = m_buffer.data() + index * pieceSize;
        m_left = m_sizes[index];
    }
    return m_hasPiece;
}

Status ReadAhead::read(std::uint8_t *data, std::size_t capacity, std::size_t &got)
{
    if (!m_thread.isStarted()) {
        return m_input->read(data, capacity, got);
    }
    got = 0;
    if (capacity == 0) {
        return Status::Ok;
    }
    while (m_left == 0) {
        if (!nextPiece()) {
            return m_status; // the thread has ended: nobody changes it any more
        }
    }
    got = capacity < m_left ? capacity : m_left;
    std::memcpy(data, m_place, got);
    m_place += got;
    m_left -= got;
    return Status::Ok;
}

} // namespace sfx
