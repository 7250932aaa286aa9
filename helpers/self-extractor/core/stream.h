// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/core/bytesource.h"
#include "helpers/self-extractor/core/memory.h"
#include "helpers/self-extractor/core/status.h"

#include <cstddef>
#include <cstdint>

namespace sfx {

/// One stage of decoding, read from its far end: whoever wants bytes pulls them, and the stage
/// pulls what it needs from the stages that it owns. Memory is bounded by the stages' own buffers.
class Stream
{
public:
    virtual ~Stream() = default;

    /// Writes up to `capacity` bytes to `data` and their number to `got`, which is 0 only at the
    /// end of the stream (or for a capacity of 0).
    [[nodiscard]] virtual Status read(std::uint8_t *data, std::size_t capacity, std::size_t &got)
        = 0;
};

/// Reads until `data` is full or the stream has ended.
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

    Status read(std::uint8_t *data, std::size_t capacity, std::size_t &got) override;

private:
    ByteSource &m_source;
    std::uint64_t m_offset;
    std::uint64_t m_left;
};

/// Bytes that belong to somebody else as a stream.
class MemoryStream final : public Stream
{
public:
    MemoryStream(const std::uint8_t *data, std::size_t size) : m_data(data), m_left(size) {}

    Status read(std::uint8_t *data, std::size_t capacity, std::size_t &got) override;

private:
    const std::uint8_t *m_data;
    std::size_t m_left;
};

} // namespace sfx
