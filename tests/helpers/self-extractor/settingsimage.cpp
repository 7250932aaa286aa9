// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/helpers/self-extractor/settingsimage.h"

#include <QtEndian>

namespace settingsimage {

namespace {

constexpr quint32 highBit = 0x80000000;

void put(QByteArray &bytes, qsizetype position, quint16 value)
{
    qToLittleEndian<quint16>(value, bytes.data() + position);
}

void put(QByteArray &bytes, qsizetype position, quint32 value)
{
    qToLittleEndian<quint32>(value, bytes.data() + position);
}

// A table with one entry, which has a name or an id.
void putTable(QByteArray &bytes, qsizetype position, quint32 key, quint32 leadsTo)
{
    const bool isNamed = (key & highBit) != 0;
    put(bytes, position + (isNamed ? 12 : 14), quint16(1));
    put(bytes, position + 16, key);
    put(bytes, position + 20, leadsTo);
}

quint32 fromTypes(qsizetype position)
{
    return static_cast<quint32>(position - types);
}

} // namespace

QByteArray withText(const QByteArray &settings)
{
    const qsizetype end = (text + settings.size() + 511) / 512 * 512;
    QByteArray image(end, '\0');
    image.replace(0, 2, "MZ");
    put(image, 60, quint32(64));
    image.replace(64, 4, QByteArray("PE\0\0", 4));
    put(image, 70, quint16(1));   // sections
    put(image, 84, quint16(240)); // bytes of the optional header
    put(image, magic, quint16(0x20b));
    put(image, directoryCount, quint32(16));
    put(image, resourceAddress, address);
    put(image, resourceAddress + 4, static_cast<quint32>(end - types));
    put(image, sectionSize - 8, static_cast<quint32>(end - types));
    put(image, sectionSize - 4, address);
    put(image, sectionSize, static_cast<quint32>(end - types));
    put(image, sectionSize + 4, static_cast<quint32>(types));
    putTable(image, types, 10, highBit | fromTypes(names));
    putTable(image, names, highBit | fromTypes(name), highBit | fromTypes(languages));
    putTable(image, languages, 0, fromTypes(data));
    put(image, data, address + fromTypes(text));
    put(image, data + 4, static_cast<quint32>(settings.size()));
    put(image, name, quint16(8));
    for (qsizetype i = 0; i < 8; ++i) {
        put(image, name + 2 + 2 * i, quint16("SETTINGS"[i]));
    }
    image.replace(text, settings.size(), settings);
    return image;
}

QByteArray changed(QByteArray image, qsizetype position, quint16 value)
{
    put(image, position, value);
    return image;
}

QByteArray changed(QByteArray image, qsizetype position, quint32 value)
{
    put(image, position, value);
    return image;
}

} // namespace settingsimage
