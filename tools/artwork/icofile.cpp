// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT
#include "tools/artwork/icofile.h"

#include <QBuffer>
#include <QDataStream>

namespace {

constexpr int largestBitmap = 96;
constexpr quint16 iconType = 1;
constexpr quint16 planes = 1;
constexpr quint16 bitsPerPixel = 32;
constexpr quint32 infoHeaderSize = 40;
constexpr quint32 fileHeaderSize = 6;
constexpr quint32 directoryEntrySize = 16;

QByteArray pngData(const QImage &image)
{
    QByteArray data;
    QBuffer buffer(&data);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG", 0);
    return data;
}

// Returns one mask row, padded to 32 bits: a bit is 1 if the pixel is fully transparent.
QByteArray maskRow(const QImage &image, int y)
{
    QByteArray row(((image.width() + 31) / 32) * 4, '\0');
    for (int x = 0; x < image.width(); ++x) {
        if (qAlpha(image.pixel(x, y)) == 0) {
            row[x / 8] = static_cast<char>(static_cast<uchar>(row[x / 8]) | (0x80u >> (x % 8)));
        }
    }
    return row;
}

QByteArray bitmapData(const QImage &source)
{
    const QImage image = source.convertToFormat(QImage::Format_ARGB32);
    QByteArray data;
    QDataStream out(&data, QIODevice::WriteOnly);
    out.setByteOrder(QDataStream::LittleEndian);

    // The height counts the colour rows and the mask rows.
    out << infoHeaderSize << qint32(image.width()) << qint32(image.height() * 2) << planes
        << bitsPerPixel;
    for (int field = 0; field < 6; ++field) {
        out << quint32(0);
    }

    for (int y = image.height() - 1; y >= 0; --y) {
        for (int x = 0; x < image.width(); ++x) {
            out << quint32(image.pixel(x, y));
        }
    }
    for (int y = image.height() - 1; y >= 0; --y) {
        const QByteArray row = maskRow(image, y);
        out.writeRawData(row.constData(), static_cast<int>(row.size()));
    }
    return data;
}

} // namespace

QByteArray makeIcoFile(const QList<QImage> &images)
{
    QByteArray directory;
    QByteArray pictures;
    QDataStream out(&directory, QIODevice::WriteOnly);
    out.setByteOrder(QDataStream::LittleEndian);

    const auto count = static_cast<quint16>(images.size());
    out << quint16(0) << iconType << count;
    quint32 offset = fileHeaderSize + count * directoryEntrySize;
    for (const QImage &image : images) {
        const QByteArray data = image.width() > largestBitmap ? pngData(image) : bitmapData(image);
        const auto size = static_cast<quint32>(data.size());
        const auto side = static_cast<quint8>(image.width() % 256); // 0 means 256
        out << side << side << quint8(0) << quint8(0) << planes << bitsPerPixel << size << offset;
        offset += size;
        pictures += data;
    }
    return directory + pictures;
}
