// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/core/stream.h"

#include <cstring>

namespace sfx {

Status readFully(Stream &stream, std::uint8_t *data, std::size_t size, std::size_t &got)
{
    got = 0;
    while (got < size) {
        std::size_t piece = 0;
        const Status status = stream.read(data + got, size - got, piece);
        if (status != Status::Ok) {
            return status;
        }
        if (piece == 0) {
            break;
        }
        got += piece;
    }
    return Status::Ok;
}

Status RangeStream::read(std::uint8_t *data, std::size_t capacity, std::size_t &got)
{
    got = capacity < m_left ? capacity : static_cast<std::size_t>(m_left);
    if (got != 0 && !m_source.readAt(m_offset, data, got)) {
        got = 0;
        return Status::ReadFailed;
    }
    m_offset += got;
    m_left -= got;
    return Status::Ok;
}

Status MemoryStream::read(std::uint8_t *data, std::size_t capacity, std::size_t &got)
{
    got = capacity < m_left ? capacity : m_left;
    std::memcpy(data, m_data, got);
    m_data += got;
    m_left -= got;
    return Status::Ok;
}

} // namespace sfx
