// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/decoding/stream.h"

namespace sfx {

/// Undoes one of the reversible filters that a packer applies before LZMA: the branch converters of
/// the processor families, and Delta.
class FilterStream final : public Stream
{
public:
    /// Undoes the filter in place for as many bytes as it can, at most `size`; returns how many.
    /// `pc` counts the bytes since the start of the stream, `state` is zero at first.
    struct State
    {
        std::uint32_t pc = 0;
        std::uint32_t x86 = 0;
        unsigned deltaDistance = 0;
        std::uint8_t delta[256] = {};
    };
    using Convert = std::size_t (*)(State &state, std::uint8_t *data, std::size_t size);

    explicit FilterStream(Owned<Stream> input) : m_input(std::move(input)) {}

    /// Chooses the filter by 7-Zip's method number. To be called once, before next().
    Status open(std::uint32_t method, const std::uint8_t *properties, std::size_t size);
    Status next(std::size_t limit, ByteView &bytes) override;

private:
    Status refill();

    Owned<Stream> m_input;
    Convert m_convert = nullptr;
    State m_state;
    Array<std::uint8_t> m_buffer;
    std::size_t m_begin = 0; // converted and not yet given out: begin to converted
    std::size_t m_converted = 0;
    std::size_t m_end = 0; // read and not yet convertible: converted to end
};

} // namespace sfx
