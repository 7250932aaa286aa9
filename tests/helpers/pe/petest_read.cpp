// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/helpers/pe/petest.h"

#include <QtEndian>

namespace petest {

namespace {

// Reads numbers at any offset. Outside the buffer it returns 0 and notes a fault.
class Reader
{
public:
    explicit Reader(const QByteArray &bytes, PeFacts &facts) : m_bytes(bytes), m_facts(facts) {}

    quint16 u16(qint64 offset) { return number<quint16>(offset); }
    quint32 u32(qint64 offset) { return number<quint32>(offset); }

    QByteArray bytes(qint64 offset, qint64 length)
    {
        if (offset < 0 || length < 0 || offset + length > m_bytes.size()) {
            fault(QStringLiteral("a structure lies outside the file"));
            return {};
        }
        return m_bytes.mid(offset, length);
    }

    void fault(const QString &text)
    {
        if (m_facts.fault.isEmpty()) {
            m_facts.fault = text;
        }
    }

    qint64 offsetOf(quint32 rva)
    {
        for (const SectionRow &section : m_facts.sections) {
            if (rva >= section.virtualAddress && rva - section.virtualAddress < section.virtualSize
                && rva - section.virtualAddress < section.rawSize) {
                return qint64(section.rawPointer) + rva - section.virtualAddress;
            }
        }
        fault(QStringLiteral("an address lies in no section"));
        return 0;
    }

private:
    template <typename Number>
    Number number(qint64 offset)
    {
        const QByteArray found = bytes(offset, sizeof(Number));
        return found.isEmpty() ? 0 : qFromLittleEndian<Number>(found.constData());
    }

    const QByteArray &m_bytes;
    PeFacts &m_facts;
};

struct Row
{
    QString name; // empty: the resource has an id
    quint32 id = 0;
    quint32 target = 0;
};

QList<Row> rowsOf(Reader &reader, qint64 root, quint32 table)
{
    const int names = reader.u16(root + table + 12);
    const int count = names + reader.u16(root + table + 14);
    QList<Row> rows;
    for (int i = 0; i < count; ++i) {
        const qint64 at = root + table + 16 + 8 * i;
        Row row{{}, reader.u32(at), reader.u32(at + 4)};
        if ((row.id & 0x80000000U) != 0) {
            const qint64 text = root + (row.id & 0x7fffffff);
            for (int k = 0; k < reader.u16(text); ++k) {
                row.name += QChar(reader.u16(text + 2 + 2 * k));
            }
        }
        if ((i < names) == row.name.isEmpty()) {
            reader.fault(QStringLiteral("names and ids are mixed"));
        }
        if (i > 0 && i != names
            && (i < names ? rows.last().name.toUpper() >= row.name.toUpper()
                          : rows.last().id >= row.id)) {
            reader.fault(QStringLiteral("a resource directory is not sorted"));
        }
        rows.append(row);
    }
    return rows;
}

QString labelOf(const Row &row)
{
    return row.name.isEmpty() ? QString::number(row.id) : u'"' + row.name + u'"';
}

void readTree(Reader &reader, qint64 root, quint32 table, const QString &path, int level,
              Resources &found)
{
    for (const Row &row : rowsOf(reader, root, table)) {
        const QString label = path.isEmpty() ? labelOf(row) : path + u'/' + labelOf(row);
        const bool isTable = (row.target & 0x80000000U) != 0;
        if (isTable != (level < 3)) {
            reader.fault(QStringLiteral("the resource tree is not three levels deep"));
            return;
        }
        if (isTable) {
            readTree(reader, root, row.target & 0x7fffffff, label, level + 1, found);
            continue;
        }
        const qint64 entry = root + row.target;
        const quint32 size = reader.u32(entry + 4);
        const quint32 rva = reader.u32(entry);
        if (size != 0 && reader.offsetOf(rva) + size > reader.offsetOf(rva + size - 1) + 1) {
            reader.fault(QStringLiteral("a resource leaves its section"));
        }
        found[label] = {size != 0 ? reader.bytes(reader.offsetOf(rva), size) : QByteArray(),
                        reader.u32(entry + 8)};
    }
}

void readSections(Reader &reader, PeFacts &facts, qint64 table, int count, quint32 sizeOfHeaders)
{
    quint32 next = sizeOfHeaders;
    facts.imageEnd = sizeOfHeaders;
    for (int i = 0; i < count; ++i) {
        const qint64 row = table + 40 * i;
        SectionRow section;
        section.name = reader.bytes(row, 8);
        section.name.truncate(static_cast<qsizetype>(qstrnlen(section.name.constData(), 8)));
        section.virtualSize = reader.u32(row + 8);
        section.virtualAddress = reader.u32(row + 12);
        section.rawSize = reader.u32(row + 16);
        section.rawPointer = reader.u32(row + 20);
        if (section.virtualAddress < next) {
            reader.fault(QStringLiteral("sections overlap in memory"));
        }
        next = section.virtualAddress + section.virtualSize;
        if (section.rawSize != 0) {
            facts.imageEnd = qMax<qint64>(facts.imageEnd, section.rawPointer + section.rawSize);
            reader.bytes(section.rawPointer, section.rawSize);
        }
        for (const SectionRow &other : std::as_const(facts.sections)) {
            if (section.rawSize != 0 && other.rawSize != 0
                && section.rawPointer < other.rawPointer + other.rawSize
                && other.rawPointer < section.rawPointer + section.rawSize) {
                reader.fault(QStringLiteral("sections overlap in the file"));
            }
        }
        facts.sections.append(section);
    }
}

} // namespace

PeFacts lookAt(const QByteArray &program)
{
    PeFacts facts;
    Reader reader(program, facts);
    const qint64 coff = reader.u32(60) + 4;
    const qint64 optional = coff + 20;
    if (reader.u32(coff - 4) != 0x4550) {
        reader.fault(QStringLiteral("no PE signature"));
        return facts;
    }
    const int sectionCount = reader.u16(coff + 2);
    const qint64 table = optional + reader.u16(coff + 16);
    const qint64 directories = optional + (reader.u16(optional) == 0x20b ? 112 : 96);
    facts.sizeOfImage = reader.u32(optional + 56);
    facts.checkSum = reader.u32(optional + 64);
    facts.symbolTable = reader.u32(coff + 8);
    for (quint32 i = 0; i < reader.u32(directories - 4); ++i) {
        facts.directories.append(
            {reader.u32(directories + 8 * i), reader.u32(directories + 8 * i + 4)});
    }
    const quint32 sizeOfHeaders = reader.u32(optional + 60);
    if (table + 40 * sectionCount > sizeOfHeaders) {
        reader.fault(QStringLiteral("the section table outgrows the headers"));
    }
    readSections(reader, facts, table, sectionCount, sizeOfHeaders);
    const quint32 alignment = reader.u32(optional + 32);
    if (alignment == 0 || facts.sections.isEmpty()) {
        reader.fault(QStringLiteral("no section, or no alignment"));
        return facts;
    }
    const SectionRow last = facts.sections.last();
    if (facts.sizeOfImage
        != (last.virtualAddress + last.virtualSize + alignment - 1) / alignment * alignment) {
        reader.fault(QStringLiteral("SizeOfImage is wrong"));
    }
    const auto place = facts.directories.value(2);
    if (place.first != 0) {
        readTree(reader, reader.offsetOf(place.first), 0, {}, 1, facts.resources);
    }
    return facts;
}

} // namespace petest
