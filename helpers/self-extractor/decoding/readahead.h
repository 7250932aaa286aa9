// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/thread.h"
#include "helpers/self-extractor/decoding/windowstream.h"

namespace sfx {

/// Lets a decoder run in a thread of its own, ahead of whoever reads, who filters, checks and writes
/// meanwhile. Nothing is copied: the decoder may be ahead by as much as its window holds. What is
/// read is the same, errors included; they come behind the bytes that were good. Where there is no
/// thread to be had, it just passes calls on.
class ReadAhead final : public Stream
{
public:
    /// A window that holds less, in bytes, makes the two wait for each other.
    static constexpr std::uint64_t usefulWindow = 4 * 1024 * 1024;

    /// `input` has been opened.
    explicit ReadAhead(Owned<WindowStream> input) : m_input(std::move(input)) {}
    /// Waits for the thread, which ends after the call of the decoder that it is in.
    ~ReadAhead() override;

    /// To be called once, before next().
    Status open();
    Status next(std::size_t limit, ByteView &bytes) override;

private:
    static void run(void *self);
    bool decodePiece();
    std::size_t freeSpace() const;

    Owned<WindowStream> m_input; // the thread's, once it runs
    Thread m_thread;

    Monitor m_monitor;           // for all that follows, but for m_given
    std::uint64_t m_decoded = 0; // bytes, since the beginning
    std::uint64_t m_read = 0;    // those of them that nobody looks at any more
    bool m_isCancelled = false;
    bool m_hasEnded = false;
    Status m_status = Status::Ok; // how it has ended

    std::size_t m_given = 0; // bytes that the reader still looks at
};

} // namespace sfx
