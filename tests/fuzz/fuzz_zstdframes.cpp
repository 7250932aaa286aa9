// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/decoding/zstdheader.h"
#include "helpers/self-extractor/decoding/zstdstream.h"
#include "tests/fuzz/require.h"
#include "tests/helpers/self-extractor/countedmemory.h"
#include "tests/helpers/self-extractor/zstdframes.h"

#include <algorithm>
#include <cstring>
#include <vector>

using namespace sfx;

namespace {

constexpr std::size_t memoryLimit = 32u << 20;

// Hands out the bytes in pieces, each in its own memory.
class PieceStream final : public Stream
{
public:
    PieceStream(const std::uint8_t *data, std::size_t size) : m_data(data), m_size(size) {}

    Status next(std::size_t limit, ByteView &bytes) override
    {
        const std::size_t size = std::min({limit, m_size, std::size_t(1 + m_calls++ * 7 % 60)});
        m_piece.assign(m_data, m_data + size);
        m_piece.shrink_to_fit();
        m_data += size;
        m_size -= size;
        bytes = {m_piece.data(), size};
        return Status::Ok;
    }

private:
    const std::uint8_t *m_data;
    std::size_t m_size;
    std::size_t m_calls = 0;
    std::vector<std::uint8_t> m_piece;
};

Status decode(const std::uint8_t *data, std::size_t size, std::uint64_t unpackSize,
              QByteArray &content)
{
    ZstdStream stream(makeOwned<PieceStream>(data, size), unpackSize);
    const std::uint64_t window = zstdWindowSize(data, size, unpackSize);
    Status status = stream.open(window);
    while (status == Status::Ok) {
        ByteView bytes;
        status = stream.next(5000, bytes);
        if (bytes.size == 0) {
            break;
        }
        content.append(reinterpret_cast<const char *>(bytes.data),
                       static_cast<qsizetype>(bytes.size));
        require(stream.freeSpace(0) != 0, "there is always space if nothing is unread");
    }
    require(static_cast<std::uint64_t>(content.size()) <= unpackSize, "not more than asked for");
    require(status != Status::Ok || static_cast<std::uint64_t>(content.size()) == unpackSize,
            "all of it");
    return status;
}

} // namespace

// Unpacks frames of any bytes, and compares with Zstandard's own library. If the library refuses
// them, the first two bytes say how much to unpack.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size < 2) {
        return 0;
    }
    const std::uint64_t wanted = data[0] * 1000u + data[1];
    data += 2;
    size -= 2;
    const auto reference = zstdframes::unpacked(
        QByteArray(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size)));
    const std::size_t before = countedmemory::inUse();
    countedmemory::reset(memoryLimit);
    QByteArray content;
    const Status status = decode(data, size,
                                 reference ? static_cast<std::uint64_t>(reference->size()) : wanted,
                                 content);
    require(!reference || status != Status::Ok || content == *reference,
            "the same content as the library's");
    require(countedmemory::inUse() == before, "all memory is given back");
    return 0;
}
