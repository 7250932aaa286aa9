// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/decoding/lzmastream.h"

#include "helpers/self-extractor/base/littleendian.h"
#include "helpers/self-extractor/decoding/decodermemory.h"

#include <algorithm>

namespace sfx {

namespace {

constexpr std::uint64_t leastDictionary = 1u << 12;

Status statusOf(SRes result)
{
    if (result == SZ_OK) {
        return Status::Ok;
    }
    return result == SZ_ERROR_MEM ? Status::NoMemory : Status::Unsupported;
}

} // namespace

Status LzmaWindowStream::allocateWindow(std::uint64_t dictionary, std::uint64_t least)
{
    const std::uint64_t size = std::max(dictionary, std::min(m_left, least));
    if (!m_window.allocate(static_cast<std::size_t>(size))) {
        return Status::NoMemory;
    }
    m_decoder.dic = m_window.data();
    m_decoder.dicBufSize = m_window.size();
    return Status::Ok;
}

Status LzmaWindowStream::next(std::size_t limit, ByteView &bytes)
{
    bytes = ByteView();
    if (m_decoder.dicPos == m_window.size()) {
        m_decoder.dicPos = 0;
    }
    const std::size_t begin = m_decoder.dicPos;
    const std::size_t wanted = static_cast<std::size_t>(
        std::min<std::uint64_t>({limit, m_left, m_window.size() - begin}));
    while (m_decoder.dicPos == begin && wanted != 0) {
        if (m_packed.size == 0) {
            const Status status = m_input->next(SIZE_MAX, m_packed);
            if (status != Status::Ok) {
                return status;
            }
        }
        std::size_t consumed = m_packed.size;
        const SRes result = decode(begin + wanted, m_packed.data, consumed);
        m_packed = {m_packed.data + consumed, m_packed.size - consumed};
        // No progress: the packed data ends too early, or contains an end mark too early.
        if (result != SZ_OK || (m_decoder.dicPos == begin && consumed == 0)) {
            return Status::Damaged;
        }
    }
    bytes = {m_window.data() + begin, m_decoder.dicPos - begin};
    m_left -= bytes.size;
    return Status::Ok;
}

LzmaStream::LzmaStream(Owned<Stream> input, std::uint64_t unpackSize)
    : LzmaWindowStream(std::move(input), unpackSize, m_decoder)
{
    LzmaDec_CONSTRUCT(&m_decoder);
}

LzmaStream::~LzmaStream()
{
    LzmaDec_FreeProbs(&m_decoder, &decoderMemory);
}

Status LzmaStream::open(const std::uint8_t *properties, std::size_t size, std::uint64_t leastWindow)
{
    if (size != LZMA_PROPS_SIZE) {
        return Status::Unsupported;
    }
    // Matches never refer to bytes before the stream, so a window for the whole stream is enough.
    const std::uint64_t dictionary
        = std::max(std::min<std::uint64_t>(readU32(properties + 1), m_left), leastDictionary);
    if (dictionary > maxDictionarySize) {
        return Status::Unsupported;
    }
    std::uint8_t own[LZMA_PROPS_SIZE] = {properties[0]};
    for (unsigned i = 0; i < 4; ++i) {
        own[1 + i] = static_cast<std::uint8_t>(dictionary >> (8 * i));
    }
    const Status status
        = statusOf(LzmaDec_AllocateProbs(&m_decoder, own, LZMA_PROPS_SIZE, &decoderMemory));
    if (status != Status::Ok) {
        return status;
    }
    LzmaDec_Init(&m_decoder);
    return allocateWindow(dictionary, leastWindow);
}

SRes LzmaStream::decode(std::size_t end, const std::uint8_t *packed, std::size_t &size)
{
    ELzmaStatus state = LZMA_STATUS_NOT_SPECIFIED;
    return LzmaDec_DecodeToDic(&m_decoder, end, packed, &size, LZMA_FINISH_ANY, &state);
}

Lzma2Stream::Lzma2Stream(Owned<Stream> input, std::uint64_t unpackSize)
    : LzmaWindowStream(std::move(input), unpackSize, m_decoder.decoder)
{
    Lzma2Dec_CONSTRUCT(&m_decoder);
}

Lzma2Stream::~Lzma2Stream()
{
    Lzma2Dec_FreeProbs(&m_decoder, &decoderMemory);
}

Status Lzma2Stream::open(const std::uint8_t *properties, std::size_t size,
                         std::uint64_t leastWindow)
{
    if (size != 1 || properties[0] > lzma2LargestProperty) {
        return Status::Unsupported;
    }
    std::uint8_t own = 0;
    while (own < properties[0] && lzma2DictionarySize(own) < m_left) {
        ++own;
    }
    if (lzma2DictionarySize(own) > maxDictionarySize) {
        return Status::Unsupported;
    }
    const Status status = statusOf(Lzma2Dec_AllocateProbs(&m_decoder, own, &decoderMemory));
    if (status != Status::Ok) {
        return status;
    }
    Lzma2Dec_Init(&m_decoder);
    return allocateWindow(lzma2DictionarySize(own), leastWindow);
}

SRes Lzma2Stream::decode(std::size_t end, const std::uint8_t *packed, std::size_t &size)
{
    ELzmaStatus state = LZMA_STATUS_NOT_SPECIFIED;
    return Lzma2Dec_DecodeToDic(&m_decoder, end, packed, &size, LZMA_FINISH_ANY, &state);
}

} // namespace sfx
