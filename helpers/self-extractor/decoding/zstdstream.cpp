// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/decoding/zstdstream.h"

#include "helpers/self-extractor/decoding/decodermemory.h"
#include "helpers/self-extractor/decoding/zstdheader.h"

#include <algorithm>

namespace sfx {

namespace {

// The most that is decoded at a time. The decoder's window is larger than the frame's by up to two
// of them, and a few bytes.
constexpr std::size_t blockSize = 128 * 1024;
constexpr std::size_t windowExtra = 2 * blockSize + 128;

} // namespace

bool ZstdStream::WindowMemory::allocate(std::size_t size)
{
    return bytes.size() >= size || bytes.allocate(size);
}

ZstdStream::ZstdStream(Owned<Stream> input, std::uint64_t unpackSize,
                       Array<std::uint8_t> *spareWindow)
    : m_input(std::move(input))
    , m_unpackSize(unpackSize)
    , m_left(unpackSize)
    , m_spareWindow(spareWindow)
    , m_window{{allocateWindow, keepWindow}, 0, false, {}}
{
    if (spareWindow != nullptr) {
        m_window.bytes = std::move(*spareWindow);
    }
}

ZstdStream::~ZstdStream()
{
    if (m_decoder != nullptr) {
        ZstdDec_Destroy(m_decoder);
    }
    if (m_spareWindow != nullptr) {
        *m_spareWindow = std::move(m_window.bytes);
    }
}

void *ZstdStream::allocateWindow(ISzAllocPtr memory, std::size_t size)
{
    auto *self = reinterpret_cast<WindowMemory *>(const_cast<ISzAlloc *>(memory));
    self->isExceeded = size > self->most;
    return !self->isExceeded && self->allocate(size) ? self->bytes.data() : nullptr;
}

void ZstdStream::keepWindow(ISzAllocPtr, void *) {}

Status ZstdStream::open(std::uint64_t window)
{
    if (window > maxZstdWindow) {
        return Status::Unsupported;
    }
    m_decoder = ZstdDec_Create(&decoderMemory, &m_window.functions);
    if (m_decoder == nullptr) {
        return Status::NoMemory;
    }
    ZstdDec_Init(m_decoder);
    m_window.most = static_cast<std::size_t>(window) + windowExtra;
    if (m_unpackSize <= window) {
        const auto size = static_cast<std::size_t>(m_unpackSize);
        if (!m_window.allocate(size)) {
            return Status::NoMemory;
        }
        m_state.win = m_window.bytes.data();
        m_state.outBuf_fromCaller = m_window.bytes.data();
        m_state.outBufSize_fromCaller = size;
    }
    return Status::Ok;
}

Status ZstdStream::statusOf(SRes result) const
{
    switch (result) {
    case SZ_OK:
        return Status::Ok;
    case SZ_ERROR_MEM:
        return m_window.isExceeded ? Status::Unsupported : Status::NoMemory;
    case SZ_ERROR_UNSUPPORTED:
        return Status::Unsupported;
    default:
        return Status::Damaged;
    }
}

// If all input is used up, gets more. At the end of the input it stays empty.
Status ZstdStream::refill()
{
    ByteView packed;
    if (m_state.inPos != m_state.inLim) {
        return Status::Ok;
    }
    const Status status = m_input->next(SIZE_MAX, packed);
    if (status == Status::Ok && packed.size != 0) {
        m_state.inBuf = packed.data;
        m_state.inPos = 0;
        m_state.inLim = packed.size;
    }
    return status;
}

// Everything that is decoded has been handed out. Decodes a block, or reads what is between blocks.
Status ZstdStream::decodeBlock()
{
    Status status = refill();
    if (status != Status::Ok) {
        return status;
    }
    if (m_state.inBuf == nullptr) {
        return Status::Damaged; // no input at all
    }
    if (m_isBetweenFrames) {
        m_state.info = CZstdDecInfo(); // freeSpace() needs the window of the next frame alone
    }
    const std::size_t begin = m_state.inPos;
    status = statusOf(ZstdDec_Decode(m_decoder, &m_state));
    if (status != Status::Ok) {
        return status;
    }
    m_isBetweenFrames = m_state.status == ZSTD_STATUS_FINISHED_FRAME;
    // The end of a block can lie beyond the circular part of the window. The decoder then says how
    // many bytes lie before it, and moves the others to the beginning at the next call.
    m_pending = m_state.needWrite_Size != 0 ? m_state.needWrite_Size
                                            : m_state.winPos - m_state.wrPos;
    const bool isStuck = m_pending == 0 && m_state.inPos == begin;
    return isStuck || m_state.outProcessed > m_unpackSize ? Status::Damaged : Status::Ok;
}

Status ZstdStream::checkEnd()
{
    while (!m_isBetweenFrames) {
        const Status status = decodeBlock();
        if (status != Status::Ok) {
            return status;
        }
    }
    const Status status = refill();
    return status == Status::Ok && m_state.inPos != m_state.inLim ? Status::Damaged : status;
}

Status ZstdStream::next(std::size_t limit, ByteView &bytes)
{
    bytes = ByteView();
    if (limit == 0) {
        return Status::Ok;
    }
    if (m_left == 0) {
        return checkEnd();
    }
    while (m_pending == 0) {
        const Status status = decodeBlock();
        if (status != Status::Ok) {
            return status;
        }
    }
    bytes = {m_state.win + m_state.wrPos, std::min(limit, m_pending)};
    m_state.wrPos += bytes.size;
    m_pending -= bytes.size;
    m_left -= bytes.size;
    return Status::Ok;
}

std::size_t ZstdStream::freeSpace(std::size_t unread) const
{
    if (unread == 0 || m_pending != 0 || m_state.outBuf_fromCaller != nullptr) {
        return SIZE_MAX;
    }
    // The decoder moves at most a block to the beginning of the window and decodes one after it. A
    // new frame overwrites everything.
    const bool isKept = !m_isBetweenFrames
        && unread + 2 * blockSize <= m_state.info.windowSize_Allocate_MAX;
    return isKept ? SIZE_MAX : 0;
}

} // namespace sfx
