// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/decoding/stream.h"

#include <algorithm>
#include <cstring>

namespace sfx {

namespace {

constexpr std::size_t rangeBuffer = 128 * 1024;

} // namespace

Status readFully(Stream &stream, std::uint8_t *data, std::size_t size, std::size_t &got)
{
    got = 0;
    while (got < size) {
        ByteView bytes;
        const Status status = stream.next(size - got, bytes);
        if (status != Status::Ok) {
            return status;
        }
        if (bytes.size == 0) {
            break;
        }
        std::memcpy(data + got, bytes.data, bytes.size);
        got += bytes.size;
    }
    return Status::Ok;
}

Status RangeStream::open()
{
    const std::uint64_t size = std::min<std::uint64_t>(rangeBuffer, m_left);
    return m_buffer.allocate(static_cast<std::size_t>(size)) ? Status::Ok : Status::NoMemory;
}

Status RangeStream::next(std::size_t limit, ByteView &bytes)
{
    const std::size_t wanted
        = static_cast<std::size_t>(std::min<std::uint64_t>({limit, m_left, m_buffer.size()}));
    bytes = ByteView();
    if (wanted != 0 && !m_source.readAt(m_offset, m_buffer.data(), wanted)) {
        return Status::ReadFailed;
    }
    bytes = {m_buffer.data(), wanted};
    m_offset += wanted;
    m_left -= wanted;
    return Status::Ok;
}

} // namespace sfx
