// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/fast-archiver/solidblocks.h"

#include "helpers/fast-archiver/content.h"
#include "helpers/fast-archiver/frameplan.h"
#include "helpers/fast-archiver/packing.h"

#include <QTest>

using namespace fast;

namespace {

constexpr std::uint64_t mebibyte = 1 << 20;

SourceFile file(const char16_t *path, std::uint64_t size, Content content = Content::Other)
{
    SourceFile made;
    made.path = path;
    made.size = size;
    made.content = content;
    return made;
}

// The blocks as text: the files' paths, with "*" after those of a filtered block.
QStringList blocksOf(const std::vector<SourceFile> &files, std::uint64_t blockSize,
                     bool filtersPrograms = true)
{
    PackOptions options;
    options.blockSize = blockSize;
    options.filtersPrograms = filtersPrograms;
    QStringList texts;
    for (const SolidBlock &block : planBlocks(files, options)) {
        QStringList paths;
        std::uint64_t size = 0;
        for (const std::size_t index : block.files) {
            paths << QString::fromStdU16String(files[index].path);
            size += files[index].size;
        }
        if (size != block.size) {
            paths << "wrong size";
        }
        texts << paths.join(' ') + (block.isFiltered ? "*" : "") + (block.isLarge ? " large" : "");
    }
    return texts;
}

pe::Bytes peFile(std::uint32_t header, std::uint16_t machine)
{
    pe::Bytes bytes(contentBytes);
    bytes[0] = 'M';
    bytes[1] = 'Z';
    pe::write32(bytes, 60, header);
    if (pe::fits(header, 6, bytes.size())) {
        bytes[header] = 'P';
        bytes[header + 1] = 'E';
        pe::write16(bytes, header + 4, machine);
    }
    return bytes;
}

pe::Bytes elfFile(std::uint8_t order, std::uint16_t machine)
{
    pe::Bytes bytes(64);
    const char start[] = "\177ELF\002";
    std::copy(start, start + 5, bytes.begin());
    bytes[5] = order;
    pe::write16(bytes, 18, machine);
    return bytes;
}

} // namespace

// Which files are packed together, and how.
class TestSolidBlocks : public QObject
{
    Q_OBJECT

private slots:
    void filesAreDistributed_data();
    void filesAreDistributed();
    void theSizeOfBlocksFollowsThatOfAllFiles_data();
    void theSizeOfBlocksFollowsThatOfAllFiles();
    void contentIsRecognized_data();
    void contentIsRecognized();
    void framesAreSetByTheirSize_data();
    void framesAreSetByTheirSize();
    void threadsAreLimited_data();
    void threadsAreLimited();
};

void TestSolidBlocks::filesAreDistributed_data()
{
    QTest::addColumn<QStringList>("blocks");
    QTest::addColumn<QStringList>("expected");
    const auto x64 = Content::ProgramX64;
    const auto x86 = Content::ProgramX86;
    const auto other = Content::OtherProgram;
    QTest::newRow("nothing") << blocksOf({}, 100) << QStringList();
    SourceFile folder = file(u"folder", 0);
    folder.isFolder = true;
    QTest::newRow("folders and empty files are in no block")
        << blocksOf({folder, file(u"empty", 0), file(u"one", 1)}, 100) << QStringList("one");
    QTest::newRow("data by extension, then by name, whatever the folder")
        << blocksOf({file(u"a/z.txt", 1), file(u"b/a.TXT", 1), file(u"c/m.png", 1),
                     file(u"d.e/none", 1), file(u"A.png", 1)},
                    100)
        << QStringList("d.e/none A.png c/m.png b/a.TXT a/z.txt");
    QTest::newRow("programs by machine, then by name, whatever the extension")
        << blocksOf({file(u"z.exe", 1, x64), file(u"b.dll", 1, x86), file(u"a.pyd", 1, x64),
                     file(u"c.exe", 1, x86)},
                    100)
        << QStringList("b.dll c.exe a.pyd z.exe*");
    QTest::newRow("only programs for x86 are filtered")
        << blocksOf({file(u"a.exe", 1, x64), file(u"b.exe", 1, other), file(u"c", 1)}, 100)
        << QStringList({"a.exe*", "b.exe c"});
    QTest::newRow("no filter is wanted")
        << blocksOf({file(u"a.exe", 1, x64), file(u"b.exe", 1, other), file(u"c", 1)}, 100, false)
        << QStringList("a.exe b.exe c");
    QTest::newRow("blocks are about equal")
        << blocksOf({file(u"a", 30), file(u"b", 30), file(u"c", 40), file(u"d", 30), file(u"e", 30),
                     file(u"f", 10)},
                    100)
        << QStringList({"a b c", "d e f"});
    QTest::newRow("a file goes where its middle lies")
        << blocksOf({file(u"a", 60), file(u"b", 40), file(u"c", 1), file(u"d", 98), file(u"e", 1)},
                    100)
        << QStringList({"a b", "c d e"});
    QTest::newRow("a block that would become too large is closed")
        << blocksOf({file(u"a", 60), file(u"b", 78), file(u"c", 20), file(u"d", 40)}, 100)
        << QStringList({"a", "b c", "d"});
    QTest::newRow("files that fill a block are alone and come first, the largest before the others")
        << blocksOf({file(u"a", 1), file(u"b", 100), file(u"c", 99), file(u"d", 300, x64),
                     file(u"e", 100)},
                    100)
        << QStringList({"d*", "b", "e", "a c"});
    QTest::newRow("large files, although blocks may be larger")
        << blocksOf({file(u"a", largeFile - 1), file(u"b", largeFile), file(u"c", 1)},
                    1024 * mebibyte)
        << QStringList({"b large", "a c"});
    const auto files = [](const char16_t *names, std::uint64_t size, Content content) {
        std::vector<SourceFile> made;
        for (const char16_t name : std::u16string(names)) {
            const char16_t path[] = {name, u'\0'};
            made.push_back(file(path, size, content));
        }
        return made;
    };
    const auto both = [](std::vector<SourceFile> one, const std::vector<SourceFile> &two) {
        one.insert(one.end(), two.begin(), two.end());
        return one;
    };
    constexpr std::uint64_t noSizeGiven = 0;
    QTest::newRow("the last of three blocks is cut into halves")
        << blocksOf(files(u"abcdefghijkl", 8 * mebibyte, other), noSizeGiven)
        << QStringList({"a b c d", "e f g h", "i j", "k l"});
    QTest::newRow("a size is given: no block is cut")
        << blocksOf(files(u"abcdefghijkl", 8 * mebibyte, other), 32 * mebibyte)
        << QStringList({"a b c d", "e f g h", "i j k l"});
    QTest::newRow("of two blocks none is cut")
        << blocksOf(files(u"abcdefgh", 8 * mebibyte, other), noSizeGiven)
        << QStringList({"a b c d", "e f g h"});
    QTest::newRow("the block that is cut need not be the last one, but its halves are")
        << blocksOf(both(files(u"abcdefgh", 8 * mebibyte, x64), files(u"yz", 4 * mebibyte, other)),
                    noSizeGiven)
        << QStringList({"a b c d*", "y z", "e f*", "g h*"});
    QTest::newRow("what is one file is not cut")
        << blocksOf(files(u"abc", 40 * mebibyte, other), noSizeGiven)
        << QStringList({"a", "b", "c"});
    QTest::newRow("equal names keep the order of their paths")
        << blocksOf({file(u"a/same", 1), file(u"b/same", 1), file(u"c/same", 1)}, 100)
        << QStringList("a/same b/same c/same");
}

void TestSolidBlocks::filesAreDistributed()
{
    QFETCH(QStringList, blocks);
    QTEST(blocks, "expected");
}

void TestSolidBlocks::theSizeOfBlocksFollowsThatOfAllFiles_data()
{
    QTest::addColumn<quint64>("total");
    QTest::addColumn<quint64>("expected");
    QTest::newRow("nothing") << quint64(0) << quint64(32 * mebibyte);
    QTest::newRow("small") << quint64(100 * mebibyte) << quint64(32 * mebibyte);
    QTest::newRow("eight blocks") << quint64(256 * mebibyte) << quint64(32 * mebibyte);
    QTest::newRow("a byte more") << quint64(256 * mebibyte + 1) << quint64(32 * mebibyte + 1);
    QTest::newRow("large") << quint64(4096 * mebibyte) << quint64(64 * mebibyte);
}

void TestSolidBlocks::theSizeOfBlocksFollowsThatOfAllFiles()
{
    QFETCH(quint64, total);
    QTEST(quint64(blockSizeFor(total)), "expected");
}

void TestSolidBlocks::contentIsRecognized_data()
{
    QTest::addColumn<int>("content");
    QTest::addColumn<int>("expected");
    const auto row = [](const char *name, const pe::Bytes &bytes, Content expected) {
        QTest::newRow(name) << int(contentOf(bytes)) << int(expected);
    };
    row("nothing", {}, Content::Other);
    row("text", {'t', 'e', 'x', 't'}, Content::Other);
    row("PE for x64", peFile(128, 0x8664), Content::ProgramX64);
    row("PE for x86", peFile(128, 0x14c), Content::ProgramX86);
    row("PE for ARM64", peFile(128, 0xaa64), Content::OtherProgram);
    row("PE, the header at the end", peFile(contentBytes - 6, 0x8664), Content::ProgramX64);
    row("PE, the header cut off", peFile(contentBytes - 5, 0x8664), Content::Other);
    row("PE, the header far away", peFile(0xffffffff, 0x8664), Content::Other);
    row("MZ and no more", {'M', 'Z'}, Content::Other);
    row("ELF for x64", elfFile(1, 62), Content::ProgramX64);
    row("ELF for x86", elfFile(1, 3), Content::ProgramX86);
    row("ELF for ARM64", elfFile(1, 183), Content::OtherProgram);
    row("ELF with big-endian numbers", elfFile(2, 62), Content::Other);
    row("ELF and no more", {0x7f, 'E', 'L', 'F'}, Content::Other);
}

void TestSolidBlocks::contentIsRecognized()
{
    QFETCH(int, content);
    QTEST(content, "expected");
}

void TestSolidBlocks::framesAreSetByTheirSize_data()
{
    QTest::addColumn<quint64>("size");
    QTest::addColumn<bool>("isLarge");
    QTest::addColumn<unsigned>("wanted");
    QTest::addColumn<unsigned>("windowLog");
    const auto row
        = [](const char *name, quint64 size, bool isLarge, unsigned wanted, unsigned windowLog) {
              QTest::newRow(name) << size << isLarge << wanted << windowLog;
          };
    row("one byte", 1, false, 0, 17);
    row("4 MiB", 4 * mebibyte, false, 0, 22);
    row("a byte more", 4 * mebibyte + 1, false, 0, 23);
    row("many files have a window that fits into a cache", 64 * mebibyte, false, 0, 23);
    row("a large file", 48 * mebibyte, true, 0, 25);
    row("the window is never larger", 4096 * mebibyte, true, 0, 25);
    row("a smaller window is wanted", 4096 * mebibyte, true, 20, 20);
    row("a larger window is wanted", 4096 * mebibyte, false, 27, 27);
}

void TestSolidBlocks::framesAreSetByTheirSize()
{
    QFETCH(quint64, size);
    QFETCH(bool, isLarge);
    QFETCH(unsigned, wanted);
    PackOptions options;
    options.windowLog = wanted;
    SolidBlock block;
    block.size = size;
    block.isLarge = isLarge;
    const FramePlan plan = framePlanFor(block, options);
    QTEST(plan.windowLog, "windowLog");
    QCOMPARE(plan.level, options.level);
    QCOMPARE(plan.partSize != 0, isLarge);
}

void TestSolidBlocks::threadsAreLimited_data()
{
    QTest::addColumn<unsigned>("threads");
    QTest::addColumn<unsigned>("expected");
    QTest::newRow("as processors") << threadsFor(0, 8, 100, 0, 1000) << 8U;
    QTest::newRow("as wanted") << threadsFor(3, 8, 100, 0, 1000) << 3U;
    QTest::newRow("more than processors") << threadsFor(16, 8, 100, 0, 1000) << 16U;
    QTest::newRow("as work") << threadsFor(0, 8, 5, 0, 1000) << 5U;
    QTest::newRow("as half of the memory allows") << threadsFor(0, 8, 100, 6000, 1000) << 3U;
    QTest::newRow("never none") << threadsFor(0, 8, 0, 100, 1000) << 1U;
}

void TestSolidBlocks::threadsAreLimited()
{
    QFETCH(unsigned, threads);
    QTEST(threads, "expected");
}

QTEST_APPLESS_MAIN(TestSolidBlocks)
#include "tst_solidblocks.moc"
