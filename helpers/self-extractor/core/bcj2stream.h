// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/core/stream.h"

#include "Bcj2.h"

namespace sfx {

/// Joins the four streams that the BCJ2 filter splits x86 code into. They are read side by side,
/// each through a buffer of its own.
class Bcj2Stream final : public Stream
{
public:
    static constexpr unsigned inputCount = BCJ2_NUM_STREAMS;

    /// `inputs`: main, calls, jumps, range coder, in this order.
    Bcj2Stream(Owned<Stream> (&inputs)[inputCount], std::uint64_t unpackSize);

    /// To be called once, before read().
    Status open();
    Status read(std::uint8_t *data, std::size_t capacity, std::size_t &got) override;

private:
    Status refill(unsigned index);

    struct Input
    {
        Owned<Stream> stream;
        Array<std::uint8_t> buffer;
    };

    Input m_inputs[inputCount];
    std::uint64_t m_left;
    CBcj2Dec m_decoder{};
};

} // namespace sfx
