// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/decoding/stream.h"

namespace sfx {

// Undoes one of the reversible filters that a packer applies before LZMA: Delta, and the branch
// converters for various processors.
class FilterStream final : public Stream
{
public:
    // Undoes the filter in place for as many of the `size` bytes as possible; returns their number.
    // `pc` counts the bytes since the start of the stream; the other members are zero at first.
    struct State
    {
        std::uint32_t pc = 0;
        std::uint32_t x86 = 0;
        unsigned deltaDistance = 0;
        std::uint8_t delta[256] = {};
    };
    using Convert = std::size_t (*)(State &state, std::uint8_t *data, std::size_t size);

    explicit FilterStream(Owned<Stream> input) : m_input(std::move(input)) {}

    // Chooses the filter by 7-Zip's method number. Call it once, before next().
    Status open(std::uint32_t method, const std::uint8_t *properties, std::size_t size);
    Status next(std::size_t limit, ByteView &bytes) override;

private:
    Status refill();

    Owned<Stream> m_input;
    Convert m_convert = nullptr;
    State m_state;
    Array<std::uint8_t> m_buffer;
    std::size_t m_begin = 0; // begin to converted: converted, but not yet handed out
    std::size_t m_converted = 0;
    std::size_t m_end = 0; // converted to end: read, but not yet convertible
};

} // namespace sfx
