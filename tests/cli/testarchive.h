// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QtEndian>

// The frame of a 7z archive as the archiver writes it: start header, packed bytes, end header.

// Computed bit by bit, so that it shares no code with the code under test.
inline quint32 crc32(const QByteArray &bytes)
{
    quint32 value = 0xFFFFFFFF;
    for (const char byte : bytes) {
        value ^= static_cast<quint8>(byte);
        for (int bit = 0; bit < 8; ++bit) {
            value = (value >> 1) ^ (0xEDB88320U & (0U - (value & 1U)));
        }
    }
    return ~value;
}

template <typename Number>
QByteArray littleEndian(Number number)
{
    QByteArray bytes(sizeof number, '\0');
    qToLittleEndian(number, bytes.data());
    return bytes;
}

inline QByteArray startHeader(quint64 offset, quint64 size, quint32 crc)
{
    const QByteArray checked = littleEndian(offset) + littleEndian(size) + littleEndian(crc);
    return QByteArray("7z\xBC\xAF\x27\x1C\0\4", 8) + littleEndian(crc32(checked)) + checked;
}

// Returns an archive with `packedSize` packed bytes.
inline QByteArray archiveOf(qsizetype packedSize)
{
    QByteArray packed(packedSize, '\0');
    for (qsizetype i = 0; i < packedSize; ++i) {
        packed[i] = static_cast<char>(i * 7 + i / 251);
    }
    const QByteArray header = "\x01 the names and sizes of the files";
    return startHeader(static_cast<quint64>(packedSize), static_cast<quint64>(header.size()),
                       crc32(header))
        + packed + header;
}
