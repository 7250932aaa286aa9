// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/decoding/windowstream.h"

#include "Lzma2Dec.h"

namespace sfx {

// Largest dictionary that is accepted, in bytes. This is also the most memory that one decoder
// takes.
constexpr std::uint64_t maxDictionarySize = 1536ull << 20;

constexpr std::uint8_t lzma2LargestProperty = 40;
// The dictionary size, in bytes, that the property byte of an LZMA2 coder stands for: powers of two
// from 4 KiB on, and the values halfway between them. The largest means 4 GiB less one byte; this
// function returns 4 GiB.
constexpr std::uint64_t lzma2DictionarySize(std::uint8_t property)
{
    return static_cast<std::uint64_t>(2 | (property & 1)) << (property / 2 + 11);
}

// The common part of the LZMA and LZMA2 decoders. The window is as large as the dictionary.
class LzmaWindowStream : public WindowStream
{
public:
    Status next(std::size_t limit, ByteView &bytes) final;
    std::size_t freeSpace(std::size_t unread) const final { return m_window.size() - unread; }

protected:
    LzmaWindowStream(Owned<Stream> input, std::uint64_t unpackSize, CLzmaDec &decoder)
        : m_left(unpackSize)
        , m_input(std::move(input))
        , m_decoder(decoder)
    {
    }

    Status allocateWindow(std::uint64_t dictionary, std::uint64_t least);
    // Decodes up to the position `end` in the window. Same interface as LzmaDec_DecodeToDic().
    virtual SRes decode(std::size_t end, const std::uint8_t *packed, std::size_t &size) = 0;

    std::uint64_t m_left; // bytes that are still to be unpacked

private:
    Owned<Stream> m_input;
    CLzmaDec &m_decoder;
    Array<std::uint8_t> m_window;
    ByteView m_packed; // input that is not yet decoded
};

// Decodes LZMA.
class LzmaStream final : public LzmaWindowStream
{
public:
    LzmaStream(Owned<Stream> input, std::uint64_t unpackSize);
    ~LzmaStream() override;

    // `properties`: the five bytes of the 7z coder. The window has at least `leastWindow` bytes,
    // even if the dictionary is smaller, but never more than the stream unpacks to. Call it once,
    // before next().
    Status open(const std::uint8_t *properties, std::size_t size, std::uint64_t leastWindow);

private:
    SRes decode(std::size_t end, const std::uint8_t *packed, std::size_t &size) override;

    CLzmaDec m_decoder{};
};

// Decodes LZMA2.
class Lzma2Stream final : public LzmaWindowStream
{
public:
    Lzma2Stream(Owned<Stream> input, std::uint64_t unpackSize);
    ~Lzma2Stream() override;

    // `properties`: the one byte of the 7z coder. Otherwise as for LZMA.
    Status open(const std::uint8_t *properties, std::size_t size, std::uint64_t leastWindow);

private:
    SRes decode(std::size_t end, const std::uint8_t *packed, std::size_t &size) override;

    CLzma2Dec m_decoder{};
};

} // namespace sfx
