// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/helpers/self-extractor/countedmemory.h"
#include "tests/helpers/self-extractor/sharedtree.h"
#include "tests/helpers/self-extractor/zstdarchive.h"

#include <QTest>

using namespace sfx;

namespace {

constexpr qsizetype mebibyte = 1024 * 1024;

// Content that is quick to pack and to unpack, and has no repeated parts.
QByteArray stutter(qsizetype size, quint32 seed)
{
    QByteArray bytes;
    bytes.reserve(size + 192);
    const QByteArray random = noise(size / 12 + 16, seed);
    for (qsizetype i = 0; bytes.size() < size; i += 16) {
        bytes += random.mid(i, 16).repeated(12);
    }
    bytes.truncate(size);
    return bytes;
}

// Small files, and some that are larger than the solid blocks of these tests.
Tree makeLargeTree()
{
    Tree tree;
    tree[QStringLiteral("main.exe")] = "not a program";
    tree[QStringLiteral("data/")] = QByteArray();
    tree[QStringLiteral("data/empty.bin")] = QByteArray("");
    for (int i = 0; i < 20; ++i) {
        tree[QStringLiteral("data/%1.bin").arg(i)]
            = stutter(100000 + 7919 * i, static_cast<quint32>(i));
    }
    tree[QStringLiteral("data/large.bin")] = stutter(9 * mebibyte + 5, 1000);
    tree[QStringLiteral("data/round.bin")] = stutter(4 * mebibyte, 1001);
    return tree;
}

const Tree &largeTree()
{
    static const Tree tree = makeLargeTree();
    return tree;
}

// Packs once for each set of switches. "zstd" is not a switch of the archiver: the archive is made
// with Zstandard, in solid blocks of this many MiB.
const QByteArray &packed(const QStringList &switches)
{
    static QMap<QStringList, QByteArray> archives;
    QByteArray &archive = archives[switches];
    if (archive.isEmpty() && switches.first() == QLatin1String("zstd")) {
        archive = packZstd(largeTree(),
                           {.blockSize = switches.at(1).toLongLong() * mebibyte,
                            .isFiltered = switches.contains(QLatin1String("BCJ")),
                            .frames = {.level = 1, .windowLog = 20}});
    } else if (archive.isEmpty()) {
        archive = packTree(largeTree(), switches);
    }
    return archive;
}

// Several solid blocks, with dictionaries of 1 MiB.
const QStringList inBlocks{"-mx=1", "-mf=off", "-m0=LZMA:d=1m", "-ms=3m"};
// One solid block that resets the dictionary many times.
const QStringList inChunks{"-mx=1", "-mf=off", "-m0=LZMA2:d=1m:c=4m", "-mmt=2"};
// Several solid blocks of Zstandard, with windows of 1 MiB.
const QStringList inZstdBlocks{"zstd", "2"};

int blockCount(const QByteArray &bytes)
{
    MemorySource source(bytes);
    Archive archive(source);
    return archive.open(0) == Status::Ok ? static_cast<int>(archive.tables().db.NumFolders) : 0;
}

} // namespace

class TestUnpackThreads : public QObject
{
    Q_OBJECT

private slots:
    void unpacksTheSame_data();
    void unpacksTheSame();
    void keepsToTheMemoryGiven_data() { addBlocks(); }
    void keepsToTheMemoryGiven();
    void letsSmallBlocksRunBesideALargeOne();
    void keepsTheWindowForTheNextBlock();
    void worksWithOneSinkOnly();
    void findsDamageInEveryBlock_data() { addBlocks(); }
    void findsDamageInEveryBlock();
    void stopsAtTheFirstFailure_data() { addBlocks(); }
    void stopsAtTheFirstFailure();

private:
    static void addBlocks();
};

void TestUnpackThreads::addBlocks()
{
    QTest::addColumn<QStringList>("switches");
    QTest::newRow("LZMA") << inBlocks;
    QTest::newRow("Zstandard") << inZstdBlocks;
}

void TestUnpackThreads::unpacksTheSame_data()
{
    QTest::addColumn<QStringList>("switches");
    QTest::addColumn<int>("leastBlocks");
    QTest::addColumn<int>("mostBlocks");
    QTest::newRow("LZMA in several blocks") << inBlocks << 4 << 23;
    QTest::newRow("LZMA2 in several blocks")
        << QStringList{"-mx=1", "-mf=off", "-ms=9m", "-m0=LZMA2:d=1m:c=4m", "-mmt=2"} << 2 << 23;
    QTest::newRow("a block for each file")
        << QStringList{"-mx=1", "-mf=off", "-ms=off", "-m0=LZMA2"} << 22 << 23;
    QTest::newRow("one block of LZMA") << QStringList{"-mx=1", "-mf=off", "-m0=LZMA"} << 1 << 1;
    QTest::newRow("one block of LZMA2 in chunks") << inChunks << 1 << 1;
    QTest::newRow("only stored") << QStringList{"-mx=0", "-ms=5m"} << 3 << 23;
    QTest::newRow("Zstandard in several blocks") << inZstdBlocks << 4 << 23;
    QTest::newRow("Zstandard and the filter for x86 in several blocks")
        << QStringList{"zstd", "2", "BCJ"} << 4 << 23;
    QTest::newRow("one block of Zstandard") << QStringList{"zstd", "1000"} << 1 << 1;
    QTest::newRow("a block of Zstandard for each file") << QStringList{"zstd", "0"} << 22 << 23;
}

// One thread decodes each solid block. The method of the block makes no difference.
void TestUnpackThreads::unpacksTheSame()
{
    QFETCH(QStringList, switches);
    QFETCH(int, leastBlocks);
    QFETCH(int, mostBlocks);
    const QByteArray &archive = packed(switches);
    const int blocks = blockCount(archive);
    QVERIFY2(blocks >= leastBlocks && blocks <= mostBlocks, qPrintable(QString::number(blocks)));
    for (unsigned threads : {1u, 2u, 3u, 100u}) {
        SharedTree shared;
        QCOMPARE(unpackShared(archive, shared, {threads}), Status::Ok);
        QVERIFY2(shared.mistake().isEmpty(), qPrintable(shared.mistake()));
        QVERIFY(shared.tree() == largeTree());
        QCOMPARE(shared.sinks(), std::min({static_cast<int>(threads), blocks, 8}));
    }
}

// A window of 1 MiB and the buffers need 7 MiB at most, one of a smaller block less.
void TestUnpackThreads::keepsToTheMemoryGiven()
{
    QFETCH(QStringList, switches);
    const QByteArray &archive = packed(switches);
    for (unsigned mebibytes : {0u, 7u, 20u, 21u}) {
        SharedTree shared;
        const std::size_t before = countedmemory::inUse();
        countedmemory::reset();
        QCOMPARE(unpackShared(archive, shared, {8, std::uint64_t(mebibytes) << 20}), Status::Ok);
        QVERIFY(shared.tree() == largeTree());
        QVERIFY(shared.sinks() >= std::max(1, static_cast<int>(mebibytes / 7)));
        QVERIFY(shared.sinks() <= std::max(1, static_cast<int>(mebibytes / 6)));
        QVERIFY2(countedmemory::peak() - before <= std::size_t(std::max(mebibytes, 7u)) << 20,
                 qPrintable(QString::number(countedmemory::peak() - before)));
    }
}

// The limit is for all blocks that are unpacked at the same time, not for the number of threads
// that the largest block would allow.
void TestUnpackThreads::letsSmallBlocksRunBesideALargeOne()
{
    Tree tree{{QStringLiteral("main.exe"), stutter(30 * mebibyte, 1)},
              {QStringLiteral("other.exe"), stutter(30 * mebibyte, 2)}};
    for (int i = 0; i < 12; ++i) {
        tree[QStringLiteral("small%1").arg(i)] = stutter(2 * mebibyte, static_cast<quint32>(i));
    }
    const QByteArray archive
        = packZstd(tree, {.blockSize = 0, .frames = {.level = 1, .windowLog = 27}});
    for (const unsigned mebibytes : {30u, 40u, 52u, 60u, 100u}) {
        SharedTree shared;
        const std::size_t before = countedmemory::inUse();
        countedmemory::reset();
        QCOMPARE(unpackShared(archive, shared, {8, std::uint64_t(mebibytes) << 20}), Status::Ok);
        QVERIFY(shared.tree() == tree);
        // A large block needs 36 MiB, each of the others 8 MiB.
        QCOMPARE(shared.sinks(), static_cast<int>(std::min(mebibytes / 8, 8u)));
        const std::size_t most = std::size_t(std::max(mebibytes, 36u)) << 20;
        QVERIFY2(countedmemory::peak() - before <= most,
                 qPrintable(QString::number(countedmemory::peak() - before)));
    }
}

// New memory for each of the six blocks would be 48 MiB.
void TestUnpackThreads::keepsTheWindowForTheNextBlock()
{
    Tree tree{{QStringLiteral("main.exe"), stutter(8 * mebibyte, 6)}};
    for (int i = 1; i < 6; ++i) {
        tree[QStringLiteral("file%1").arg(i)] = stutter(8 * mebibyte, static_cast<quint32>(i));
    }
    const QByteArray archive
        = packZstd(tree, {.blockSize = 0, .frames = {.level = 1, .windowLog = 23}});
    QCOMPARE(blockCount(archive), 6);
    SharedTree shared;
    countedmemory::reset();
    QCOMPARE(unpackShared(archive, shared, {1}), Status::Ok);
    QVERIFY(shared.tree() == tree);
    QVERIFY2(countedmemory::total() < 16 * mebibyte,
             qPrintable(QString::number(countedmemory::total())));
}

void TestUnpackThreads::worksWithOneSinkOnly()
{
    MemorySource source(packed(inBlocks));
    Archive archive(source);
    QCOMPARE(archive.open(0), Status::Ok);
    TreeSink sink;
    QCOMPARE(unpack(archive, sink, 1 << 30, {8}), Status::Ok);
    QVERIFY(sink.isConsistent);
    QVERIFY(sink.tree == largeTree());
}

// Changes single bits everywhere in the packed data.
void TestUnpackThreads::findsDamageInEveryBlock()
{
    QFETCH(QStringList, switches);
    const QByteArray &whole = packed(switches);
    int refused = 0;
    for (qsizetype at = 32; at < whole.size(); at += whole.size() / 25) {
        QByteArray bytes = whole;
        bytes[at] = static_cast<char>(bytes[at] ^ 0x10);
        SharedTree shared;
        const Status status = unpackShared(bytes, shared, {4});
        refused += status != Status::Ok;
        QVERIFY2(shared.mistake().isEmpty(), qPrintable(shared.mistake()));
        QVERIFY(status != Status::Ok || shared.tree() == largeTree());
    }
    QVERIFY2(refused > 23, qPrintable(QString::number(refused)));
}

void TestUnpackThreads::stopsAtTheFirstFailure()
{
    QFETCH(QStringList, switches);
    const QByteArray &archive = packed(switches);
    for (int writes : {0, 1, 7, 20}) {
        SharedTree shared;
        shared.failAfter(writes);
        QCOMPARE(unpackShared(archive, shared, {4}), Status::DiskFull);
        // The other threads finish the write that they are doing or have just begun.
        QVERIFY2(shared.writes() <= writes + 1 + 2 * 3,
                 qPrintable(QString::number(shared.writes())));
    }
}

QTEST_APPLESS_MAIN(TestUnpackThreads)
#include "tst_unpackthreads.moc"
