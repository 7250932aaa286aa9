// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/core/stream.h"
#include "helpers/self-extractor/core/thread.h"

namespace sfx {

/// Reads another stage in a thread of its own, a few MiB ahead: that stage decodes while whoever
/// reads this one filters, checks and writes. What is read is the same, errors included; they come
/// behind the bytes that were good. Where there is no thread to be had, it just passes reads on.
class ReadAhead final : public Stream
{
public:
    explicit ReadAhead(Owned<Stream> input) : m_input(std::move(input)) {}
    /// Waits for the thread, which ends after the call of the other stage that it is in.
    ~ReadAhead() override;

    /// To be called once, before read().
    Status open();
    Status read(std::uint8_t *data, std::size_t capacity, std::size_t &got) override;

private:
    static constexpr unsigned pieceCount = 16;
    static constexpr std::size_t pieceSize = 256 * 1024;

    static void run(void *self);
    bool fillPiece();
    bool nextPiece();

    Owned<Stream> m_input; // the thread's, once it runs
    Array<std::uint8_t> m_buffer;
    Thread m_thread;

    Monitor m_monitor; // for all that follows, but for the reader's place
    std::size_t m_sizes[pieceCount] = {};
    unsigned m_filled = 0; // pieces, since the beginning; may wrap around
    unsigned m_emptied = 0;
    bool m_isCancelled = false;
    bool m_hasEnded = false;
    Status m_status = Status::Ok; // how it has ended

    const std::uint8_t *m_place = nullptr; // in the piece that is being read
    std::size_t m_left = 0;
    bool m_hasPiece = false;
};

} // namespace sfx
