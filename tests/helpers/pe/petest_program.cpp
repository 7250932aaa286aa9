// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/helpers/pe/petest.h"

#include <QRandomGenerator>
#include <QtEndian>

#include <algorithm>

namespace petest {

namespace {

constexpr quint32 sectionAlignment = 0x1000;
constexpr quint32 fileAlignment = 0x200;

QByteArray random(qsizetype size, quint32 seed)
{
    QRandomGenerator generator(seed);
    QByteArray bytes(size, Qt::Uninitialized);
    std::generate(bytes.begin(), bytes.end(),
                  [&] { return static_cast<char>(generator.generate()); });
    return bytes;
}

void put16(QByteArray &bytes, qsizetype offset, quint32 value)
{
    qToLittleEndian(static_cast<quint16>(value), bytes.data() + offset);
}

void put32(QByteArray &bytes, qsizetype offset, quint32 value)
{
    qToLittleEndian(value, bytes.data() + offset);
}

// QByteArray::resize() does not initialise new bytes.
void growTo(QByteArray &bytes, qsizetype size)
{
    bytes.append(size - bytes.size(), '\0');
}

void add16(QByteArray &bytes, quint32 value)
{
    bytes.resize(bytes.size() + 2);
    put16(bytes, bytes.size() - 2, value);
}

void add32(QByteArray &bytes, quint32 value)
{
    bytes.resize(bytes.size() + 4);
    put32(bytes, bytes.size() - 4, value);
}

quint32 rounded(qsizetype value, quint32 unit)
{
    return (static_cast<quint32>(value) + unit - 1) / unit * unit;
}

// One resource. `name` is an id if it is a number.
struct Leaf
{
    quint32 type;
    QString name;
    quint32 language;
    QByteArray content;
};

QByteArray groupOver(const QList<int> &sizes, const QList<int> &ids)
{
    QByteArray group;
    add16(group, 0);
    add16(group, 1);
    add16(group, static_cast<quint32>(sizes.size()));
    for (qsizetype i = 0; i < sizes.size(); ++i) {
        group += static_cast<char>(sizes[i] >= 256 ? 0 : sizes[i]);
        group += group.back();
        add16(group, 0);
        add16(group, 1);
        add16(group, 32);
        add32(group, static_cast<quint32>(makeImage(sizes[i]).size()));
        add16(group, static_cast<quint32>(ids[i]));
    }
    return group;
}

QList<Leaf> leavesOf(const Recipe &recipe)
{
    QList<Leaf> leaves;
    if (recipe.icons) {
        leaves += {{3, "1", 1033, makeImage(16)},
                   {3, "2", 1033, makeImage(32)},
                   {3, "5", 1033, makeImage(48)},
                   {3, "9", 1033, makeImage(24)}};
    }
    leaves += {{6, "7", 1031, random(100, 1)},
               {10, "DATA", 0, random(333, 2)},
               {10, "100", 1033, random(5, 3)},
               {10, "100", 2052, random(6, 4)}};
    if (recipe.icons) {
        leaves += {{14, "OTHER", 1033, groupOver({32}, {2})},
                   {14, "1", 1033, groupOver({16, 32, 48}, {1, 2, 5})}};
    }
    leaves += {{16, "1", 1033, random(600, 5)}};
    return leaves;
}

// Writes tables, names, data entries and data one after the other, as linkers do.
class SectionWriter
{
public:
    explicit SectionWriter(quint32 address) : m_address(address) {}

    QByteArray write(const QList<Leaf> &leaves)
    {
        QMap<quint32, QList<Leaf>> types;
        for (const Leaf &leaf : leaves) {
            types[leaf.type].append(leaf);
        }
        growTo(m_out, 16 + 8 * types.size());
        put16(m_out, 14, static_cast<quint32>(types.size()));
        qsizetype row = 16;
        for (auto type = types.cbegin(); type != types.cend(); ++type, row += 8) {
            put32(m_out, row, type.key());
            const quint32 table = writeNames(type.value());
            put32(m_out, row + 4, table | 0x80000000U);
        }
        for (const auto &[entry, content] : std::as_const(m_data)) {
            growTo(m_out, rounded(m_out.size(), 4));
            put32(m_out, entry, m_address + static_cast<quint32>(m_out.size()));
            m_out += content;
        }
        return m_out;
    }

private:
    quint32 writeNames(const QList<Leaf> &leaves)
    {
        QStringList names;
        for (const Leaf &leaf : leaves) {
            if (!names.contains(leaf.name)) {
                names.append(leaf.name);
            }
        }
        const auto table = m_out.size();
        growTo(m_out, table + 16 + 8 * names.size());
        for (qsizetype i = 0; i < names.size(); ++i) {
            bool isNumber = false;
            quint32 key = names[i].toUInt(&isNumber);
            if (!isNumber) {
                key = static_cast<quint32>(m_out.size()) | 0x80000000U;
                add16(m_out, static_cast<quint32>(names[i].size()));
                for (const QChar letter : names[i]) {
                    add16(m_out, letter.unicode());
                }
                growTo(m_out, rounded(m_out.size(), 4));
            }
            const qsizetype counter = table + (isNumber ? 14 : 12);
            put16(m_out, counter, qFromLittleEndian<quint16>(m_out.constData() + counter) + 1U);
            const quint32 languages = writeLanguages(leaves, names[i]);
            put32(m_out, table + 16 + 8 * i, key);
            put32(m_out, table + 20 + 8 * i, languages | 0x80000000U);
        }
        return static_cast<quint32>(table);
    }

    quint32 writeLanguages(const QList<Leaf> &leaves, const QString &name)
    {
        QList<Leaf> mine;
        std::copy_if(leaves.begin(), leaves.end(), std::back_inserter(mine),
                     [&](const Leaf &leaf) { return leaf.name == name; });
        const auto table = m_out.size();
        growTo(m_out, table + 16 + 24 * mine.size());
        put16(m_out, table + 14, static_cast<quint32>(mine.size()));
        for (qsizetype i = 0; i < mine.size(); ++i) {
            const auto entry = table + 16 + 8 * mine.size() + 16 * i;
            put32(m_out, table + 16 + 8 * i, mine[i].language);
            put32(m_out, table + 20 + 8 * i, static_cast<quint32>(entry));
            put32(m_out, entry + 4, static_cast<quint32>(mine[i].content.size()));
            put32(m_out, entry + 8, 1252);
            m_data.append({entry, mine[i].content});
        }
        return static_cast<quint32>(table);
    }

    quint32 m_address;
    QByteArray m_out;
    QList<QPair<qsizetype, QByteArray>> m_data;
};

// Writes sections one after the other, in the file and in memory.
class ProgramWriter
{
public:
    explicit ProgramWriter(const Recipe &recipe) : m_recipe(recipe)
    {
        m_out = random(0x400, 9);
        m_out[0] = 'M';
        m_out[1] = 'Z';
        put32(m_out, 60, 0x80);
        m_table = 0x80 + 24 + (recipe.pe32Plus ? 240 : 224);
        std::fill(m_out.begin() + 0x80, m_out.end(), '\0');
    }

    quint32 nextAddress() const { return m_address; }

    void addSection(const char *name, const QByteArray &content, quint32 characteristics,
                    int slack = 0)
    {
        const auto row = m_table + 40 * m_count++;
        m_out.replace(row, qsizetype(qstrlen(name)), name);
        put32(m_out, row + 8, static_cast<quint32>(content.size()));
        put32(m_out, row + 12, m_address);
        put32(m_out, row + 16, rounded(content.size() + slack, fileAlignment));
        put32(m_out, row + 20, static_cast<quint32>(m_out.size()));
        put32(m_out, row + 36, characteristics);
        m_out += content;
        growTo(m_out, rounded(m_out.size() + slack, fileAlignment));
        m_address = rounded(m_address + content.size(), sectionAlignment);
    }

    void setDirectory(int index, quint32 address, qsizetype size)
    {
        const auto at = 0x80 + 24 + (m_recipe.pe32Plus ? 112 : 96) + 8 * index;
        put32(m_out, at, address);
        put32(m_out, at + 4, static_cast<quint32>(size));
    }

    void writeHeaders()
    {
        constexpr int optional = 0x80 + 24;
        m_out.replace(0x80, 4, "PE\0\0", 4);
        put16(m_out, 0x84, m_recipe.pe32Plus ? 0x8664 : 0x14c);
        put16(m_out, 0x86, static_cast<quint32>(m_count));
        put16(m_out, 0x94, m_recipe.pe32Plus ? 240 : 224);
        put16(m_out, 0x96, 0x22);
        put16(m_out, optional, m_recipe.pe32Plus ? 0x20b : 0x10b);
        put32(m_out, optional + 16, sectionAlignment);
        put32(m_out, optional + 32, sectionAlignment);
        put32(m_out, optional + 36, fileAlignment);
        put32(m_out, optional + 56, m_address);
        put32(m_out, optional + 60, 0x400);
        put16(m_out, optional + 68, 2); // for Windows, without a console
        put32(m_out, optional + (m_recipe.pe32Plus ? 108 : 92), 16);
        if (!m_recipe.headerRoom) {
            // Notes directly after the section table, as some linkers write them.
            m_out.replace(m_table + 40 * m_count, 20, random(20, 8));
        }
    }

    QByteArray &bytes() { return m_out; }

private:
    Recipe m_recipe;
    QByteArray m_out;
    qsizetype m_table = 0;
    int m_count = 0;
    quint32 m_address = sectionAlignment;
};

} // namespace

QByteArray makeProgram(const Recipe &recipe)
{
    ProgramWriter program(recipe);
    QByteArray text = random(0x321, 6);
    put32(text, 64 + 24, 0); // a debug directory's PointerToRawData, set below
    program.addSection(".text", text, 0x60000020);
    if (recipe.resources) {
        const quint32 address = program.nextAddress();
        const QByteArray tree = SectionWriter(address).write(leavesOf(recipe));
        program.addSection(".rsrc", tree, 0x40000040, recipe.slack);
        program.setDirectory(2, address, tree.size());
    }
    if (recipe.foreignBehind) {
        program.addSection(".data", random(0x555, 7), 0xc0000040);
    }
    if (recipe.relocBehind) {
        program.setDirectory(5, program.nextAddress(), 12);
        program.addSection(".reloc", QByteArray("\0\x10\0\0\x0c\0\0\0\0\0\0\0", 12), 0x42000040);
    }
    program.writeHeaders();
    QByteArray &bytes = program.bytes();
    const auto imageEnd = static_cast<quint32>(bytes.size());
    if (recipe.symbols) {
        put32(bytes, 0x80 + 12, imageEnd);
    }
    if (recipe.debugDirectory) {
        program.setDirectory(6, 0x1000 + 64, recipe.debugSize);
        put32(bytes, 0x400 + 64 + 16, 16);
        put32(bytes, 0x400 + 64 + 24, imageEnd + 16);
    }
    if (recipe.certificate) {
        program.setDirectory(4, imageEnd + 8, 64);
    }
    bytes += overlayOf(recipe.overlay);
    if (recipe.checkSum) {
        put32(bytes, 0x80 + 24 + 64, 0x12345);
    }
    return bytes;
}

QByteArray overlayOf(qsizetype size)
{
    return random(size, 77);
}

} // namespace petest
