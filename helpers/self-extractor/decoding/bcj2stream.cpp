// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/decoding/bcj2stream.h"

#include <algorithm>

namespace sfx {

namespace {

constexpr std::size_t bufferSize = 256 * 1024;
constexpr std::size_t addressBuffer = 64 * 1024; // a multiple of an address's size

} // namespace

Bcj2Stream::Bcj2Stream(Owned<Stream> (&inputs)[inputCount], std::uint64_t unpackSize)
    : m_left(unpackSize)
{
    for (unsigned i = 0; i < inputCount; ++i) {
        m_inputs[i].stream = std::move(inputs[i]);
    }
    Bcj2Dec_Init(&m_decoder);
}

Status Bcj2Stream::open()
{
    for (unsigned i = 0; i < inputCount; ++i) {
        if (BCJ2_IS_32BIT_STREAM(i) && !m_inputs[i].addresses.allocate(addressBuffer)) {
            return Status::NoMemory;
        }
    }
    if (!m_buffer.allocate(bufferSize)) {
        return Status::NoMemory;
    }
    for (unsigned i = 0; i < inputCount; ++i) { // empty, but not null: the decoder adds to them
        m_decoder.bufs[i] = m_buffer.data();
        m_decoder.lims[i] = m_buffer.data();
    }
    return Status::Ok;
}

// Called when the decoder has used up an input.
Status Bcj2Stream::refill(unsigned index)
{
    Input &input = m_inputs[index];
    ByteView bytes;
    Status status = Status::Ok;
    if (BCJ2_IS_32BIT_STREAM(index)) {
        bytes.data = input.addresses.data();
        status
            = readFully(*input.stream, input.addresses.data(), input.addresses.size(), bytes.size);
        bytes.size &= ~static_cast<std::size_t>(3);
    } else {
        status = input.stream->next(bufferSize, bytes);
    }
    if (status != Status::Ok) {
        return status;
    }
    m_decoder.bufs[index] = bytes.data;
    m_decoder.lims[index] = bytes.data + bytes.size;
    return bytes.size == 0 ? Status::Damaged : Status::Ok;
}

Status Bcj2Stream::next(std::size_t limit, ByteView &bytes)
{
    bytes = ByteView();
    const std::size_t wanted
        = static_cast<std::size_t>(std::min<std::uint64_t>({limit, m_left, m_buffer.size()}));
    m_decoder.dest = m_buffer.data();
    m_decoder.destLim = m_buffer.data() + wanted;
    while (m_decoder.dest != m_decoder.destLim) {
        if (Bcj2Dec_Decode(&m_decoder) != SZ_OK) {
            return Status::Damaged;
        }
        if (m_decoder.dest == m_decoder.destLim) {
            break;
        }
        if (m_decoder.state >= inputCount) {
            return Status::Damaged;
        }
        const Status status = refill(m_decoder.state);
        if (status != Status::Ok) {
            return status;
        }
    }
    bytes = {m_buffer.data(), wanted};
    m_left -= wanted;
    return Status::Ok;
}

} // namespace sfx
