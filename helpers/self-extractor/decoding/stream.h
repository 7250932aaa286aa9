// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/bytesource.h"
#include "helpers/self-extractor/base/memory.h"
#include "helpers/self-extractor/base/status.h"

#include <cstddef>
#include <cstdint>

namespace sfx {

/// Some bytes that belong to somebody else.
struct ByteView
{
    const std::uint8_t *data = nullptr;
    std::size_t size = 0;
};

/// One stage of decoding, read from its far end: whoever wants bytes pulls them, and the stage
/// pulls what it needs from the stages that it owns. Each hands out its own memory, so that nothing
/// is copied which no stage changes; that memory bounds what a chain of stages takes.
class Stream
{
public:
    virtual ~Stream() = default;

    /// The next bytes, at most `limit`; none only at the end of the stream (or for a limit of 0). They
    /// are the stream's, and stay as they are until the next call.
    [[nodiscard]] virtual Status next(std::size_t limit, ByteView &bytes) = 0;
};

/// Copies until `data` is full or the stream has ended.
Status readFully(Stream &stream, std::uint8_t *data, std::size_t size, std::size_t &got);

/// A range of the executable as a stream.
class RangeStream final : public Stream
{
public:
    RangeStream(ByteSource &source, std::uint64_t offset, std::uint64_t size)
        : m_source(source)
        , m_offset(offset)
        , m_left(size)
    {
    }

    /// To be called once, before next().
    Status open();
    Status next(std::size_t limit, ByteView &bytes) override;

private:
    ByteSource &m_source;
    std::uint64_t m_offset;
    std::uint64_t m_left;
    Array<std::uint8_t> m_buffer;
};

} // namespace sfx
