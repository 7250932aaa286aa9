// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/programs/programreader.h"

quint64 ProgramReader::number(qint64 offset, int bytes) const
{
    if (offset < 0 || offset + bytes > m_program.size()) {
        return 0;
    }
    quint64 value = 0;
    for (int i = bytes - 1; i >= 0; --i) {
        value = value << 8 | quint8(m_program[offset + i]);
    }
    return value;
}

QString ProgramReader::version(int field) const
{
    return QStringLiteral("%1.%2")
        .arg(number(optional() + field, 2))
        .arg(number(optional() + field + 2, 2));
}

ProgramReader::Directory ProgramReader::directory(int index) const
{
    const qint64 row = optional() + 112 + 8 * index;
    return {quint32(number(row, 4)), quint32(number(row + 4, 4))};
}

quint32 ProgramReader::computedCheckSum() const
{
    quint32 sum = 0;
    for (qint64 i = 0; i < m_program.size(); i += 2) {
        const bool isOwnField = i == optional() + 64 || i == optional() + 66;
        const int bytes = i + 1 < m_program.size() ? 2 : 1;
        sum += isOwnField ? 0 : quint32(number(i, bytes));
        sum = (sum & 0xffff) + (sum >> 16);
    }
    return sum + quint32(m_program.size());
}

qint64 ProgramReader::offsetOf(quint32 rva) const
{
    const qint64 table = optional() + qint64(number(coff() + 16, 2));
    for (quint64 i = 0; i < number(coff() + 2, 2); ++i) {
        const qint64 row = table + 40 * qint64(i);
        const quint64 address = number(row + 12, 4);
        if (rva >= address && rva - address < number(row + 16, 4)) {
            return qint64(number(row + 20, 4) + rva - address);
        }
    }
    return -1;
}

QString ProgramReader::textAt(quint32 rva) const
{
    const qint64 begin = offsetOf(rva);
    const qint64 end = begin < 0 ? -1 : m_program.indexOf('\0', begin);
    return end < 0 ? QString() : QString::fromLatin1(m_program.mid(begin, end - begin));
}

QByteArray ProgramReader::loadConfig() const
{
    const qint64 begin = directory(10).address == 0 ? -1 : offsetOf(directory(10).address);
    return begin < 0 ? QByteArray() : m_program.mid(begin, qint64(number(begin, 4)));
}

QMap<QString, QStringList> ProgramReader::imports() const
{
    QMap<QString, QStringList> found;
    for (qint64 row = offsetOf(directory(1).address); number(row + 12, 4) != 0; row += 20) {
        QStringList &functions = found[textAt(quint32(number(row + 12, 4))).toLower()];
        for (qint64 entry = offsetOf(quint32(number(row, 4))); number(entry, 8) != 0; entry += 8) {
            const quint64 name = number(entry, 8);
            const bool byNumber = (name >> 63) != 0;
            functions << (byNumber ? '#' + QString::number(name & 0xffff)
                                   : textAt(quint32(name) + 2));
        }
    }
    return found;
}
