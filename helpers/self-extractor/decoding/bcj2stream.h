// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/decoding/stream.h"

#include "Bcj2.h"

namespace sfx {

// Joins the four streams that the BCJ2 filter splits x86 code into.
class Bcj2Stream final : public Stream
{
public:
    static constexpr unsigned inputCount = BCJ2_NUM_STREAMS;

    // `inputs`: main, calls, jumps, range coder, in this order.
    Bcj2Stream(Owned<Stream> (&inputs)[inputCount], std::uint64_t unpackSize);

    // Call it once, before next().
    Status open();
    Status next(std::size_t limit, ByteView &bytes) override;

private:
    Status refill(unsigned index);

    struct Input
    {
        Owned<Stream> stream;
        Array<std::uint8_t> addresses; // of calls or jumps, whole addresses only
    };

    Input m_inputs[inputCount];
    std::uint64_t m_left;
    Array<std::uint8_t> m_buffer;
    CBcj2Dec m_decoder{};
};

} // namespace sfx
