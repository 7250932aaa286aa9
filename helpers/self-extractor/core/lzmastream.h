// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/core/stream.h"

#include "Lzma2Dec.h"

namespace sfx {

/// Largest dictionary that is accepted, in bytes. It is the most memory one stage can take.
constexpr std::uint64_t maxDictionarySize = 1536ull << 20;

constexpr std::uint8_t lzma2LargestProperty = 40;
/// What the one property byte of an LZMA2 coder says, in bytes: half powers of two from 4 KiB on. The
/// largest means 4 GiB less one byte, and is given as 4 GiB here.
constexpr std::uint64_t lzma2DictionarySize(std::uint8_t property)
{
    return static_cast<std::uint64_t>(2 | (property & 1)) << (property / 2 + 11);
}

/// Decodes LZMA. The window is no larger than what the stream unpacks to.
class LzmaStream final : public Stream
{
public:
    LzmaStream(Owned<Stream> input, std::uint64_t unpackSize);
    ~LzmaStream() override;

    /// `properties`: the five bytes of the 7z coder. To be called once, before read().
    Status open(const std::uint8_t *properties, std::size_t size);
    Status read(std::uint8_t *data, std::size_t capacity, std::size_t &got) override;

private:
    Owned<Stream> m_input;
    std::uint64_t m_left;
    CLzmaDec m_decoder{};
    Array<std::uint8_t> m_buffer;
    std::size_t m_begin = 0;
    std::size_t m_end = 0;
};

/// Decodes LZMA2. As LzmaStream.
class Lzma2Stream final : public Stream
{
public:
    Lzma2Stream(Owned<Stream> input, std::uint64_t unpackSize);
    ~Lzma2Stream() override;

    /// `properties`: the one byte of the 7z coder. To be called once, before read().
    Status open(const std::uint8_t *properties, std::size_t size);
    Status read(std::uint8_t *data, std::size_t capacity, std::size_t &got) override;

private:
    Owned<Stream> m_input;
    std::uint64_t m_left;
    CLzma2Dec m_decoder{};
    Array<std::uint8_t> m_buffer;
    std::size_t m_begin = 0;
    std::size_t m_end = 0;
};

} // namespace sfx
