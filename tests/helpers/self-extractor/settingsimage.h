// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>

// A small executable image with one section, whose only resource is SETTINGS. Damage is made by
// changing numbers at these positions.
namespace settingsimage {

constexpr qsizetype magic = 88;             // of the optional header, 2 bytes
constexpr qsizetype directoryCount = 196;   // of the optional header, 4 bytes
constexpr qsizetype resourceAddress = 216;  // data directory: address, and 4 bytes later the size
constexpr qsizetype sectionSize = 344;      // bytes of the section in the file
constexpr qsizetype types = 512;            // the section, which begins with the table of types
constexpr qsizetype names = types + 24;     // the table of names
constexpr qsizetype languages = types + 48; // the table of languages
constexpr qsizetype data = types + 72;      // address and size of the text
constexpr qsizetype name = types + 88;      // SETTINGS, after its length
constexpr qsizetype text = types + 112;
constexpr quint32 address = 0x1000; // of the section in memory

// The image, without anything after it.
QByteArray withText(const QByteArray &settings);

// The same with a number of 2 or 4 bytes changed.
QByteArray changed(QByteArray image, qsizetype position, quint16 value);
QByteArray changed(QByteArray image, qsizetype position, quint32 value);

} // namespace settingsimage
