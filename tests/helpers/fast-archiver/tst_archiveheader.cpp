// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/fast-archiver/archiveheader.h"

#include "helpers/fast-archiver/headernumbers.h"
#include "helpers/fast-archiver/headerpacking.h"
#include "tests/helpers/fast-archiver/unpackedarchive.h"

#include <QTest>

#include "7zCrc.h"

using namespace fast;

namespace {

QByteArray hex(const pe::Bytes &bytes)
{
    return QByteArray(reinterpret_cast<const char *>(bytes.data()),
                      static_cast<qsizetype>(bytes.size()))
        .toHex(' ');
}

QByteArray hexOfBits(const std::vector<bool> &values)
{
    HeaderWriter writer;
    writer.bits(values);
    return hex(writer.content());
}

void append(QByteArray &archive, pe::ByteView bytes)
{
    archive.append(reinterpret_cast<const char *>(bytes.data()),
                   static_cast<qsizetype>(bytes.size()));
}

// An archive whose packed streams are only zeros: enough for readers of the header.
QByteArray archiveWith(const std::vector<SourceFile> &files, const std::vector<SolidBlock> &blocks,
                       const std::vector<PackedBlock> &packed, bool packsHeader)
{
    std::uint64_t offset = 0;
    for (const PackedBlock &block : packed) {
        offset += block.packedSize;
    }
    QByteArray streams(static_cast<qsizetype>(offset), '\0');
    pe::Bytes header = archiveHeader(files, blocks, packed, 17);
    if (packsHeader) {
        const auto smaller = packHeader(header);
        if (!smaller) {
            return {};
        }
        append(streams, smaller->bytes);
        header = headerOfPackedHeader(*smaller, offset);
        offset += smaller->bytes.size();
    }
    QByteArray archive;
    append(archive, startHeader(offset, header));
    archive += streams;
    append(archive, header);
    return archive;
}

SourceFile fileNamed(const std::u16string &path, std::uint64_t size)
{
    SourceFile file;
    file.path = path;
    file.size = size;
    file.modified = 132000000000000000 + size;
    file.attributes = 0x81a48020;
    return file;
}

} // namespace

// The bytes of a 7z header, and what 7-Zip's parser reads from it.
class TestArchiveHeader : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { CrcGenerateTable(); }
    void numbersHaveOneToNineBytes_data();
    void numbersHaveOneToNineBytes();
    void bitsBeginWithTheHighest();
    void sevenZipReadsWhatWasWritten_data();
    void sevenZipReadsWhatWasWritten();
    void manyBlocksAndFiles();
    void aShortHeaderIsNotPacked();
};

void TestArchiveHeader::numbersHaveOneToNineBytes_data()
{
    QTest::addColumn<quint64>("number");
    QTest::addColumn<QByteArray>("bytes");
    const auto row = [](quint64 number, const char *bytes) {
        QTest::addRow("%llx", static_cast<unsigned long long>(number))
            << number << QByteArray(bytes);
    };
    row(0, "00");
    row(0x7f, "7f");
    row(0x80, "80 80");
    row(0x3fff, "bf ff");
    row(0x4000, "c0 00 40");
    row(0x123456, "d2 56 34");
    row(0x1fffff, "df ff ff");
    row(0x200000, "e0 00 00 20");
    row(0xfffffff, "ef ff ff ff");
    row(0x10000000, "f0 00 00 00 10");
    row(0xffffffff, "f0 ff ff ff ff");
    row(0x7ffffffff, "f7 ff ff ff ff");
    row(0x800000000, "f8 00 00 00 00 08");
    row(0x3ffffffffff, "fb ff ff ff ff ff");
    row(0x40000000000, "fc 00 00 00 00 00 04");
    row(0x1ffffffffffff, "fd ff ff ff ff ff ff");
    row(0x2000000000000, "fe 00 00 00 00 00 00 02");
    row(0xffffffffffffff, "fe ff ff ff ff ff ff ff");
    row(0x100000000000000, "ff 00 00 00 00 00 00 00 01");
    row(0xffffffffffffffff, "ff ff ff ff ff ff ff ff ff");
}

void TestArchiveHeader::numbersHaveOneToNineBytes()
{
    QFETCH(quint64, number);
    HeaderWriter writer;
    writer.number(number);
    QTEST(hex(writer.content()), "bytes");
}

void TestArchiveHeader::bitsBeginWithTheHighest()
{
    QCOMPARE(hexOfBits({}), QByteArray());
    QCOMPARE(hexOfBits({true}), QByteArray("80"));
    QCOMPARE(hexOfBits({false, true, true, false, false, false, false, true}), QByteArray("61"));
    QCOMPARE(hexOfBits({false, false, false, false, false, false, false, false, true}),
             QByteArray("00 80"));
}

void TestArchiveHeader::sevenZipReadsWhatWasWritten_data()
{
    QTest::addColumn<bool>("packsHeader");
    QTest::newRow("a plain header") << false;
    QTest::newRow("a packed header") << true;
}

void TestArchiveHeader::sevenZipReadsWhatWasWritten()
{
    QFETCH(bool, packsHeader);
    std::vector<SourceFile> files
        = {fileNamed(u"a.exe", 1000), fileNamed(u"empty", 0), fileNamed(u"folder", 0),
           fileNamed(u"folder/\u6587\U0001f600", 7), fileNamed(u"large", 0x1234567890)};
    files[2].isFolder = true;
    const std::vector<SolidBlock> blocks
        = {{{4}, 0x1234567890, false, true}, {{0, 3}, 1007, true, false}};
    const std::vector<PackedBlock> packed = {{5, {0x11111111}}, {6, {0x22222222, 0x33333333}}};

    const auto archive
        = readArchive(archiveWith(files, blocks, packed, packsHeader), Unpacking::HeaderOnly);
    QVERIFY(archive);
    QCOMPARE(archive->blocks, QStringList({"Zstandard 78187493520", "BCJ Zstandard 1007"}));
    QStringList lines;
    for (const ArchivedEntry &entry : archive->entries) {
        lines << entry.text();
    }
    const QString rest = ", attributes 81a48020, check sum ";
    QCOMPARE(lines,
             QStringList({"empty 0 bytes, time 132000000000000000" + rest + "00000000",
                          "folder/ 0 bytes, time 132000000000000000" + rest + "00000000",
                          "large 78187493520 bytes, time 132000078187493520" + rest + "11111111",
                          "a.exe 1000 bytes, time 132000000000001000" + rest + "22222222",
                          QStringLiteral("folder/文😀 7 bytes, time 132000000000000007") + rest
                              + "33333333"}));
}

void TestArchiveHeader::manyBlocksAndFiles()
{
    std::vector<SourceFile> files;
    std::vector<SolidBlock> blocks(300);
    std::vector<PackedBlock> packed(300);
    for (std::size_t i = 0; i < 30000; ++i) {
        files.push_back(fileNamed(u"folder/file" + QString::number(i).toStdU16String(), i + 1));
        blocks[i % 300].files.push_back(i);
        blocks[i % 300].size += i + 1;
        packed[i % 300].checkSums.push_back(static_cast<std::uint32_t>(i));
        packed[i % 300].packedSize = i % 300;
    }
    const QByteArray bytes = archiveWith(files, blocks, packed, true);
    const auto archive = readArchive(bytes, Unpacking::HeaderOnly);
    QVERIFY(archive);
    QCOMPARE(archive->blocks.size(), 300);
    QCOMPARE(archive->entries.size(), 30000);
    for (qsizetype i = 0; i < 30000; ++i) { // in the order of the blocks
        const qsizetype number = i / 100 + i % 100 * 300;
        const ArchivedEntry &entry = archive->entries.at(i);
        QCOMPARE(entry.path, "folder/file" + QString::number(number));
        QCOMPARE(entry.size, quint64(number + 1));
        QCOMPARE(entry.checkSum, quint32(number));
    }
    // The reason for packing it: the header is a hundred bytes for each file, but very regular.
    QVERIFY2(archive->headerSize < 400000, qPrintable(QString::number(archive->headerSize)));
}

void TestArchiveHeader::aShortHeaderIsNotPacked()
{
    const pe::Bytes header = {1, 0};
    QVERIFY(!packHeader(header));
}

QTEST_APPLESS_MAIN(TestArchiveHeader)
#include "tst_archiveheader.moc"
