// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "cli/archivecheck.h"

#include <QByteArray>
#include <QIODevice>
#include <QtEndian>

#include <array>
#include <optional>

namespace {

constexpr qint64 startHeaderSize = 32;
constexpr qint64 checkedOffset = 12; // the start header's check sum covers the bytes from here on
constexpr qint64 chunkSize = 1048576;

constexpr std::array<quint32, 256> makeCrcTable()
{
    std::array<quint32, 256> table{};
    for (quint32 i = 0; i < table.size(); ++i) {
        quint32 value = i;
        for (int bit = 0; bit < 8; ++bit) {
            value = (value >> 1) ^ ((value & 1) != 0 ? 0xEDB88320U : 0U);
        }
        table[i] = value;
    }
    return table;
}

constexpr std::array<quint32, 256> crcTable = makeCrcTable();

// Computes the CRC-32 of 7z, zip and gzip over several pieces.
class Crc32
{
public:
    void add(const QByteArray &bytes)
    {
        for (const char byte : bytes) {
            m_value = crcTable[(m_value ^ static_cast<quint8>(byte)) & 0xFF] ^ (m_value >> 8);
        }
    }
    quint32 value() const { return ~m_value; }

private:
    quint32 m_value = 0xFFFFFFFF;
};

// Returns the check sum of the next `size` bytes, or nothing if there are fewer.
std::optional<quint32> crcOfNext(QIODevice &device, qint64 size)
{
    Crc32 crc;
    while (size > 0) {
        const QByteArray chunk = device.read(qMin(size, chunkSize));
        if (chunk.isEmpty()) {
            return std::nullopt;
        }
        crc.add(chunk);
        size -= chunk.size();
    }
    return crc.value();
}

} // namespace

// The start header contains: "7z" and four more bytes, two bytes of version, the check sum of the
// following 20 bytes, and in these the header's offset (from the end of the start header), size and
// check sum.
bool isWholeArchive(QIODevice &archive)
{
    if (!archive.seek(0)) {
        return false;
    }
    const QByteArray start = archive.read(startHeaderSize);
    if (start.size() != startHeaderSize
        || !start.startsWith(QByteArrayView("7z\xBC\xAF\x27\x1C", 6))) {
        return false;
    }
    Crc32 startCrc;
    startCrc.add(start.mid(checkedOffset));
    const auto expectedStartCrc = qFromLittleEndian<quint32>(start.constData() + 8);
    const auto offset = qFromLittleEndian<quint64>(start.constData() + 12);
    const auto size = qFromLittleEndian<quint64>(start.constData() + 20);
    const auto expectedCrc = qFromLittleEndian<quint32>(start.constData() + 28);
    // The comparisons are in this order so that no sum can overflow.
    const auto room = static_cast<quint64>(archive.size() - startHeaderSize);
    if (startCrc.value() != expectedStartCrc || size == 0 || size > room || offset != room - size) {
        return false;
    }
    return archive.seek(startHeaderSize + static_cast<qint64>(offset))
        && crcOfNext(archive, static_cast<qint64>(size)) == expectedCrc;
}

bool endsWithArchive(QIODevice &output, QIODevice &archive)
{
    qint64 left = archive.size();
    if (output.size() < left || !output.seek(output.size() - left) || !archive.seek(0)) {
        return false;
    }
    while (left > 0) {
        const QByteArray expected = archive.read(qMin(left, chunkSize));
        if (expected.isEmpty() || output.read(expected.size()) != expected) {
            return false;
        }
        left -= expected.size();
    }
    return true;
}
