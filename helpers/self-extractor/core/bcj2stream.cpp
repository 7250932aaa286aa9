// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/core/bcj2stream.h"

#include <cstring>

namespace sfx {

namespace {

constexpr std::size_t bufferSize = 64 * 1024; // a multiple of 4, as the address streams need

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
        if (!m_inputs[i].buffer.allocate(bufferSize)) {
            return Status::NoMemory;
        }
        m_decoder.bufs[i] = m_inputs[i].buffer.data();
        m_decoder.lims[i] = m_inputs[i].buffer.data();
    }
    return Status::Ok;
}

// Called when the decoder has used up a buffer. The address streams are cut to whole addresses.
Status Bcj2Stream::refill(unsigned index)
{
    Input &input = m_inputs[index];
    std::size_t got = 0;
    const Status status = readFully(*input.stream, input.buffer.data(), input.buffer.size(), got);
    if (status != Status::Ok) {
        return status;
    }
    if (BCJ2_IS_32BIT_STREAM(index)) {
        got &= ~static_cast<std::size_t>(3);
    }
    m_decoder.bufs[index] = input.buffer.data();
    m_decoder.lims[index] = input.buffer.data() + got;
    return got == 0 ? Status::Damaged : Status::Ok;
}

Status Bcj2Stream::read(std::uint8_t *data, std::size_t capacity, std::size_t &got)
{
    got = 0;
    const std::size_t wanted = capacity < m_left ? capacity : static_cast<std::size_t>(m_left);
    m_decoder.dest = data;
    m_decoder.destLim = data + wanted;
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
    got = wanted;
    m_left -= wanted;
    return Status::Ok;
}

} // namespace sfx
