// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/helpers/self-extractor/largefile.h"

#include "tests/helpers/self-extractor/sfxtest.h"

#include "7zCrc.h"

#include <QtEndian>

#include <array>

namespace {

// The marks of 7-Zip's archive header (7zFormat.txt in its source package).
enum Mark : char {
    End = 0,
    Header = 1,
    MainStreams = 4,
    Files = 5,
    PackInfo = 6,
    UnpackInfo = 7,
    Size = 9,
    Crc = 10,
    Folder = 11,
    UnpackSize = 12,
    Names = 17
};

QByteArray littleEndian(quint64 value, qsizetype size)
{
    QByteArray bytes(8, 0);
    qToLittleEndian(value, bytes.data());
    return bytes.left(size);
}

// The longest encoding of a number.
QByteArray number(qsizetype value)
{
    return '\xff' + littleEndian(static_cast<quint64>(value), 8);
}

quint32 crcOf(const QByteArray &bytes)
{
    return CrcCalc(bytes.constData(), static_cast<std::size_t>(bytes.size()));
}

QByteArray nameField(const QString &name)
{
    return QByteArray(reinterpret_cast<const char *>(name.utf16()), 2 * name.size() + 2);
}

// The archiver's output for the zeros, without the mark for the end of the stream. It begins with a
// full reset, so it can follow any data.
const QByteArray &packedZeros()
{
    static const QByteArray packed = [] {
        const QByteArray archive
            = packTree({{QStringLiteral("zeros"), QByteArray(LargeFile::zerosAtOnce, '\0')}},
                       {QStringLiteral("-m0=LZMA2:d=2m"), QStringLiteral("-mhc=off")});
        return archive.isEmpty()
            ? QByteArray()
            : archive.mid(32, qFromLittleEndian<qint64>(archive.constData() + 12) - 1);
    }();
    return packed;
}

// Continues the CRC over zerosAtOnce zeros. The result for a number is the sum of the results for
// its bits, so there is no need to process 4 GiB.
quint32 crcAfterZeros(quint32 crc)
{
    static const std::array<quint32, 32> ofBits = [] {
        CrcGenerateTable();
        const QByteArray zeros(LargeFile::zerosAtOnce, '\0');
        std::array<quint32, 32> results{};
        for (unsigned bit = 0; bit < 32; ++bit) {
            results[bit]
                = CrcUpdate(1u << bit, zeros.constData(), static_cast<std::size_t>(zeros.size()));
        }
        return results;
    }();
    quint32 result = 0;
    for (unsigned bit = 0; bit < 32; ++bit) {
        if (crc >> bit & 1) {
            result ^= ofBits[bit];
        }
    }
    return result;
}

} // namespace

void LargeFile::appendZeros(int times)
{
    for (int i = 0; i < times; ++i) {
        m_crc = crcAfterZeros(m_crc);
    }
    m_packed += packedZeros().repeated(times);
    m_size += static_cast<quint64>(zerosAtOnce) * static_cast<quint64>(times);
}

void LargeFile::appendSample(const QByteArray &bytes)
{
    CrcGenerateTable();
    m_samples.insert(m_size, bytes);
    m_crc = CrcUpdate(m_crc, bytes.constData(), static_cast<std::size_t>(bytes.size()));
    const auto last = static_cast<quint16>(bytes.size() - 1);
    // A chunk that is not packed and resets the dictionary.
    m_packed += '\x01' + QByteArray(1, static_cast<char>(last >> 8)) + static_cast<char>(last)
        + bytes;
    m_size += static_cast<quint64>(bytes.size());
}

QByteArray LargeFile::archiveWith(const QByteArray &program, const QString &programName,
                                  const QString &name) const
{
    if (packedZeros().isEmpty() || program.isEmpty()) {
        return QByteArray();
    }
    const QByteArray packed = m_packed + '\0';
    const QByteArray copy("\x01\x01\x00", 3);
    const QByteArray lzma2("\x01\x21\x21\x01\x12", 5); // with a dictionary of 2 MiB
    const QByteArray names = '\0' + nameField(programName) + nameField(name);
    QByteArray header;
    header += Header;
    header += MainStreams;
    header += PackInfo + number(0) + number(2);
    header += Size + number(program.size()) + number(packed.size());
    header += End;
    header += UnpackInfo;
    header += Folder + number(2) + '\0' + copy + lzma2;
    header += UnpackSize + number(program.size()) + number(static_cast<qsizetype>(m_size));
    header += QByteArray(1, Crc) + '\1' + littleEndian(crcOf(program), 4)
        + littleEndian(m_crc ^ 0xffffffff, 4);
    header += End;
    header += End;
    header += Files + number(2) + Names + number(names.size()) + names;
    header += End;
    header += End;

    QByteArray archive = QByteArray("7z\xbc\xaf\x27\x1c\x00\x04", 8) + QByteArray(24, '\0');
    archive.replace(12, 8, littleEndian(static_cast<quint64>(program.size() + packed.size()), 8));
    archive.replace(20, 8, littleEndian(static_cast<quint64>(header.size()), 8));
    archive += program + packed + header;
    resealArchive(archive);
    return archive;
}
