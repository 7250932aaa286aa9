// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/helpers/pe/petest.h"

#include <QRandomGenerator>
#include <QtEndian>

namespace petest {

namespace {

template <typename Number>
QByteArray little(Number value)
{
    QByteArray bytes(sizeof value, '\0');
    qToLittleEndian(value, bytes.data());
    return bytes;
}

template <typename Number>
QByteArray big(Number value)
{
    QByteArray bytes(sizeof value, '\0');
    qToBigEndian(value, bytes.data());
    return bytes;
}

QByteArray chunk(const QByteArray &type, const QByteArray &data)
{
    quint32 crc = 0xffffffff;
    for (const char byte : type + data) {
        crc ^= static_cast<quint8>(byte);
        for (int bit = 0; bit < 8; ++bit) {
            crc = (crc >> 1) ^ ((crc & 1) != 0 ? 0xedb88320U : 0U);
        }
    }
    return big(static_cast<quint32>(data.size())) + type + data + big(crc ^ 0xffffffff);
}

QByteArray pixels(int size)
{
    QRandomGenerator generator(static_cast<quint32>(size));
    QByteArray bytes(4 * size * size, '\0');
    for (char &byte : bytes) {
        byte = static_cast<char>(generator.generate());
    }
    return bytes;
}

QByteArray pngImage(int size)
{
    const QByteArray rows = pixels(size);
    QByteArray filtered;
    for (int y = 0; y < size; ++y) {
        filtered += '\0' + rows.mid(4 * size * y, 4 * size);
    }
    const auto side = big(static_cast<quint32>(size));
    return QByteArray("\x89PNG\r\n\x1a\n")
        + chunk("IHDR", side + side + QByteArray("\x08\x06\0\0\0", 5))
        + chunk("IDAT", qCompress(filtered).mid(4)) + chunk("IEND", {});
}

QByteArray bitmapImage(int size)
{
    const int maskSize = (size + 31) / 32 * 4 * size;
    return little(40) + little(size) + little(2 * size) + little<quint16>(1) + little<quint16>(32)
        + little(0) + little(4 * size * size + maskSize) + QByteArray(16, '\0') + pixels(size)
        + QByteArray(maskSize, '\0');
}

} // namespace

QByteArray makeImage(int size)
{
    return size >= 256 ? pngImage(size) : bitmapImage(size);
}

QByteArray makeIcon(const QList<int> &sizes)
{
    QByteArray directory = little<quint16>(0) + little<quint16>(1)
        + little(static_cast<quint16>(sizes.size()));
    QByteArray images;
    for (const int size : sizes) {
        const QByteArray image = makeImage(size);
        const auto side = static_cast<quint8>(size >= 256 ? 0 : size);
        directory += little(side) + little(side) + little<quint16>(0) + little<quint16>(1)
            + little<quint16>(32) + little(static_cast<quint32>(image.size()))
            + little(static_cast<quint32>(6 + 16 * sizes.size() + images.size()));
        images += image;
    }
    return directory + images;
}

} // namespace petest
