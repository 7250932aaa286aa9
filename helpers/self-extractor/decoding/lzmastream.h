// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/decoding/windowstream.h"

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

/// What the decoders of LZMA and LZMA2 share. The window is as large as the dictionary.
class LzmaWindowStream : public WindowStream
{
public:
    Status next(std::size_t limit, ByteView &bytes) final;

protected:
    LzmaWindowStream(Owned<Stream> input, std::uint64_t unpackSize, CLzmaDec &decoder)
        : m_left(unpackSize)
        , m_input(std::move(input))
        , m_decoder(decoder)
    {
    }

    Status allocateWindow(std::uint64_t dictionary, std::uint64_t least);
    /// Decodes up to the place `end` of the window. In the form of LzmaDec_DecodeToDic().
    virtual SRes decode(std::size_t end, const std::uint8_t *packed, std::size_t &size) = 0;

    std::uint64_t m_left; // bytes to unpack

private:
    Owned<Stream> m_input;
    CLzmaDec &m_decoder;
    ByteView m_packed; // the input's, not yet decoded
};

/// Decodes LZMA.
class LzmaStream final : public LzmaWindowStream
{
public:
    LzmaStream(Owned<Stream> input, std::uint64_t unpackSize);
    ~LzmaStream() override;

    /// `properties`: the five bytes of the 7z coder. The window has at least so many bytes even if the
    /// dictionary is smaller, but never more than the stream unpacks to. To be called once, before
    /// next().
    Status open(const std::uint8_t *properties, std::size_t size, std::uint64_t leastWindow);

private:
    SRes decode(std::size_t end, const std::uint8_t *packed, std::size_t &size) override;

    CLzmaDec m_decoder{};
};

/// Decodes LZMA2.
class Lzma2Stream final : public LzmaWindowStream
{
public:
    Lzma2Stream(Owned<Stream> input, std::uint64_t unpackSize);
    ~Lzma2Stream() override;

    /// `properties`: the one byte of the 7z coder. The rest as with LZMA.
    Status open(const std::uint8_t *properties, std::size_t size, std::uint64_t leastWindow);

private:
    SRes decode(std::size_t end, const std::uint8_t *packed, std::size_t &size) override;

    CLzma2Dec m_decoder{};
};

} // namespace sfx
