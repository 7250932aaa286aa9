// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/thread.h"
#include "helpers/self-extractor/decoding/windowstream.h"

namespace sfx {

// Runs a decoder on its own thread while the caller filters, checks and writes. Nothing is copied:
// the decoder may be ahead by as much as its window holds. Errors are reported after all good
// bytes. Without a thread it calls the decoder directly.
class ReadAhead final : public Stream
{
public:
    // With a smaller window, in bytes, the two threads would often wait for each other.
    static constexpr std::uint64_t usefulWindow = 4 * 1024 * 1024;

    // `input` has been opened before.
    explicit ReadAhead(Owned<WindowStream> input) : m_input(std::move(input)) {}
    // Waits for the thread, which ends after its current call of the decoder.
    ~ReadAhead() override;

    // Call it once, before next().
    Status open();
    Status next(std::size_t limit, ByteView &bytes) override;

private:
    static void run(void *self);
    bool decodePiece();
    void append(const ByteView &piece);

    Owned<WindowStream> m_input; // used by the thread only, once it runs
    Thread m_thread;

    Monitor m_monitor; // protects the members below, except m_given
    // What is decoded and not yet given to the reader. The second part is only used if the decoder
    // has gone back to the beginning of its window in between.
    ByteView m_parts[2];
    std::size_t m_unread = 0; // decoded bytes that the reader has not finished with
    std::size_t m_enough = 0; // with so many, or fewer, the waiting thread looks for room again
    std::size_t m_wanted = 0; // with so many, or more, the waiting reader goes on
    bool m_isCancelled = false;
    bool m_hasEnded = false;
    Status m_status = Status::Ok; // the status at the end

    std::size_t m_given = 0; // bytes that the reader may still be using
};

} // namespace sfx
