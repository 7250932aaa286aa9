// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QMap>
#include <QStringList>

// Reads a 64-bit Windows program's header, imports and load configuration, without the code that
// wrote them. Numbers outside the file are 0.
class ProgramReader
{
public:
    explicit ProgramReader(const QByteArray &program) : m_program(program) {}

    quint64 number(qint64 offset, int bytes) const;
    bool is64Bit() const { return number(optional(), 2) == 0x20b; }
    quint16 characteristics() const { return quint16(number(coff() + 18, 2)); }
    quint32 timeStamp() const { return quint32(number(coff() + 4, 4)); }
    quint32 checkSum() const { return quint32(number(optional() + 64, 4)); }
    quint16 dllCharacteristics() const { return quint16(number(optional() + 70, 2)); }
    QString systemVersion() const { return version(40); }
    QString subsystemVersion() const { return version(48); }

    struct Directory
    {
        quint32 address = 0;
        quint32 size = 0;
    };
    Directory directory(int index) const;

    // The sum that IMAGEHLP's CheckSumMappedFile makes.
    quint32 computedCheckSum() const;

    // The bytes of the load configuration, by the size that it gives itself; empty without one.
    QByteArray loadConfig() const;

    // The imported functions by their library, whose name is in lower case. Imports by number are "#"
    // and the number.
    QMap<QString, QStringList> imports() const;

private:
    qint64 coff() const { return qint64(number(60, 4)) + 4; }
    qint64 optional() const { return coff() + 20; }
    QString version(int field) const;
    qint64 offsetOf(quint32 rva) const; // -1 outside all sections
    QString textAt(quint32 rva) const;

    const QByteArray m_program;
};
