// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/bytesource.h"
#include "helpers/self-extractor/base/memory.h"
#include "helpers/self-extractor/base/status.h"

#include <cstddef>
#include <cstdint>

namespace sfx {

// Bytes that belong to another object.
struct ByteView
{
    const std::uint8_t *data = nullptr;
    std::size_t size = 0;
};

// One stage of decoding. The reader asks a stage for bytes, and the stage asks the stages that it
// owns. Each stage hands out its own memory, so bytes are copied only where a stage changes them. A
// chain never takes more than the memory of its stages.
class Stream
{
public:
    virtual ~Stream() = default;

    // Returns the next bytes, at most `limit`. There are none only at the end of the stream, or if
    // `limit` is 0. They belong to the stream and stay valid until the next call.
    [[nodiscard]] virtual Status next(std::size_t limit, ByteView &bytes) = 0;
};

// Copies bytes until `data` is full or the stream has ended. `got` becomes their number.
Status readFully(Stream &stream, std::uint8_t *data, std::size_t size, std::size_t &got);

// A range of the executable, as a stream.
class RangeStream final : public Stream
{
public:
    RangeStream(ByteSource &source, std::uint64_t offset, std::uint64_t size)
        : m_source(source)
        , m_offset(offset)
        , m_left(size)
    {
    }

    // Call it once, before next().
    Status open();
    Status next(std::size_t limit, ByteView &bytes) override;

private:
    ByteSource &m_source;
    std::uint64_t m_offset;
    std::uint64_t m_left;
    Array<std::uint8_t> m_buffer;
};

} // namespace sfx
