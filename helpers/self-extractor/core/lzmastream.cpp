// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/core/lzmastream.h"

#include "helpers/self-extractor/core/decodermemory.h"
#include "helpers/self-extractor/core/littleendian.h"

namespace sfx {

namespace {

constexpr std::size_t inputSize = 128 * 1024;
constexpr std::uint32_t leastDictionary = 1u << 12;

Status statusOf(SRes result)
{
    if (result == SZ_OK) {
        return Status::Ok;
    }
    return result == SZ_ERROR_MEM ? Status::NoMemory : Status::Unsupported;
}

// One loop for both decoders: `decode` has the form of LzmaDec_DecodeToBuf.
template <typename Decoder, typename Decode>
Status pump(Stream &input, Array<std::uint8_t> &buffer, std::size_t &begin, std::size_t &end,
            Decoder *decoder, Decode decode, std::uint8_t *data, std::size_t capacity,
            std::size_t &got)
{
    got = 0;
    while (got == 0 && capacity != 0) {
        if (begin == end) {
            begin = 0;
            const Status status = input.read(buffer.data(), buffer.size(), end);
            if (status != Status::Ok) {
                return status;
            }
        }
        SizeT produced = capacity;
        SizeT consumed = end - begin;
        ELzmaStatus state = LZMA_STATUS_NOT_SPECIFIED;
        const SRes result = decode(decoder, data, &produced, buffer.data() + begin, &consumed,
                                   LZMA_FINISH_ANY, &state);
        begin += consumed;
        got = produced;
        // Without progress the packed data has ended too early, or has an end mark too early.
        if (result != SZ_OK || (produced == 0 && consumed == 0)) {
            return Status::Damaged;
        }
    }
    return Status::Ok;
}

} // namespace

LzmaStream::LzmaStream(Owned<Stream> input, std::uint64_t unpackSize)
    : m_input(std::move(input))
    , m_left(unpackSize){LzmaDec_CONSTRUCT(&m_decoder)}

    LzmaStream::~LzmaStream()
{
    LzmaDec_Free(&m_decoder, &decoderMemory);
}

Status LzmaStream::open(const std::uint8_t *properties, std::size_t size)
{
    if (size != LZMA_PROPS_SIZE) {
        return Status::Unsupported;
    }
    std::uint64_t dictionary = readU32(properties + 1);
    dictionary = dictionary < m_left ? dictionary : m_left;
    dictionary = dictionary < leastDictionary ? leastDictionary : dictionary;
    if (dictionary > maxDictionarySize) {
        return Status::Unsupported;
    }
    std::uint8_t own[LZMA_PROPS_SIZE] = {properties[0]};
    for (unsigned i = 0; i < 4; ++i) {
        own[1 + i] = static_cast<std::uint8_t>(dictionary >> (8 * i));
    }
    if (!m_buffer.allocate(inputSize)) {
        return Status::NoMemory;
    }
    const Status status
        = statusOf(LzmaDec_Allocate(&m_decoder, own, LZMA_PROPS_SIZE, &decoderMemory));
    if (status == Status::Ok) {
        LzmaDec_Init(&m_decoder);
    }
    return status;
}

Status LzmaStream::read(std::uint8_t *data, std::size_t capacity, std::size_t &got)
{
    const std::size_t wanted = capacity < m_left ? capacity : static_cast<std::size_t>(m_left);
    const Status status = pump(*m_input, m_buffer, m_begin, m_end, &m_decoder, LzmaDec_DecodeToBuf,
                               data, wanted, got);
    m_left -= got;
    return status;
}

Lzma2Stream::Lzma2Stream(Owned<Stream> input, std::uint64_t unpackSize)
    : m_input(std::move(input))
    , m_left(unpackSize){Lzma2Dec_CONSTRUCT(&m_decoder)}

    Lzma2Stream::~Lzma2Stream()
{
    Lzma2Dec_Free(&m_decoder, &decoderMemory);
}

Status Lzma2Stream::open(const std::uint8_t *properties, std::size_t size)
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
    if (!m_buffer.allocate(inputSize)) {
        return Status::NoMemory;
    }
    const Status status = statusOf(Lzma2Dec_Allocate(&m_decoder, own, &decoderMemory));
    if (status == Status::Ok) {
        Lzma2Dec_Init(&m_decoder);
    }
    return status;
}

Status Lzma2Stream::read(std::uint8_t *data, std::size_t capacity, std::size_t &got)
{
    const std::size_t wanted = capacity < m_left ? capacity : static_cast<std::size_t>(m_left);
    const Status status = pump(*m_input, m_buffer, m_begin, m_end, &m_decoder, Lzma2Dec_DecodeToBuf,
                               data, wanted, got);
    m_left -= got;
    return status;
}

} // namespace sfx
