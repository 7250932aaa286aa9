// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/core/joincrc.h"
#include "helpers/self-extractor/core/parts.h"
#include "tests/helpers/self-extractor/sharedtree.h"

#include "7zCrc.h"

#include <QTest>

using namespace sfx;

namespace {

constexpr qsizetype mebibyte = 1024 * 1024;

// Quick to pack and to unpack, and different everywhere.
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

// Small and large files, so that blocks begin within files, and several in one.
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

// Where the filter for x86 has work to do, has nothing to go by, and meets small files.
Tree makeCodeTree()
{
    Tree tree;
    tree[QStringLiteral("main.exe")] = "not a program";
    QByteArray calls = noise(64 * 1024, 7);
    for (qsizetype i = 0; i + 8 < calls.size(); i += 9) {
        calls[i] = '\xe8';
        calls[i + 4] = '\0';
    }
    QByteArray grey(6 * mebibyte, '\xe8');
    for (qsizetype i = 3; i < grey.size(); i += 4) {
        grey[i] = '\0';
    }
    tree[QStringLiteral("calls.bin")] = calls.repeated(100);
    tree[QStringLiteral("grey.bin")] = grey;
    for (int i = 0; i < 2000; ++i) {
        tree[QStringLiteral("small/%1.bin").arg(i)] = calls.mid(17 * i, 1500 + i);
    }
    tree[QStringLiteral("small/")] = QByteArray();
    return tree;
}

const Tree &largeTree()
{
    static const Tree tree = makeLargeTree();
    return tree;
}

const Tree &codeTree()
{
    static const Tree tree = makeCodeTree();
    return tree;
}

// Packed once for each set of switches.
const QByteArray &packed(const Tree &tree, const QStringList &switches)
{
    static QMap<QPair<const Tree *, QStringList>, QByteArray> archives;
    QByteArray &archive = archives[{&tree, switches}];
    if (archive.isEmpty()) {
        archive = packTree(tree, switches);
    }
    return archive;
}

const QStringList inBlocks{"-mx=1", "-mf=off", "-m0=LZMA2:d=1m:c=4m", "-mmt=2"};
const QStringList inFolders{"-mx=1", "-mf=off", "-m0=LZMA", "-ms=3m"};

std::size_t partCount(const QByteArray &bytes)
{
    MemorySource source(bytes);
    Archive archive(source);
    Parts parts;
    return archive.open(0) == Status::Ok && parts.find(archive, true) == Status::Ok ? parts.size()
                                                                                    : 0;
}

} // namespace

class TestParallelUnpacking : public QObject
{
    Q_OBJECT

private slots:
    void unpacksTheSame_data();
    void unpacksTheSame();
    void unpacksFilteredBlocks_data();
    void unpacksFilteredBlocks();
    void keepsToTheMemoryGiven();
    void worksWithOneSinkOnly();
    void findsDamageInEveryPart_data();
    void findsDamageInEveryPart();
    void stopsAtTheFirstFailure();
    void joinsChecksums();
};

void TestParallelUnpacking::unpacksTheSame_data()
{
    QTest::addColumn<QStringList>("switches");
    QTest::addColumn<int>("leastParts");
    QTest::newRow("LZMA2 in blocks") << inBlocks << 4;
    QTest::newRow("LZMA in folders") << inFolders << 4;
    QTest::newRow("every file a folder of its own")
        << QStringList{"-mx=1", "-mf=off", "-ms=off", "-m0=LZMA2"} << 22;
    QTest::newRow("LZMA2 in folders and blocks")
        << QStringList{"-mx=1", "-mf=off", "-ms=9m", "-m0=LZMA2:d=1m:c=4m", "-mmt=2"} << 4;
    QTest::newRow("one stream") << QStringList{"-mx=1", "-mf=off", "-m0=LZMA"} << 1;
    QTest::newRow("only stored") << QStringList{"-mx=0", "-ms=5m"} << 3;
}

void TestParallelUnpacking::unpacksTheSame()
{
    QFETCH(QStringList, switches);
    QFETCH(int, leastParts);
    const QByteArray &archive = packed(largeTree(), switches);
    const auto parts = static_cast<int>(partCount(archive));
    QVERIFY2(parts >= leastParts, qPrintable(QString::number(parts)));
    for (unsigned threads : {1u, 2u, 3u, 100u}) {
        SharedTree shared;
        QCOMPARE(unpackShared(archive, shared, {threads}), Status::Ok);
        QVERIFY2(shared.mistake().isEmpty(), qPrintable(shared.mistake()));
        QVERIFY(shared.tree() == largeTree());
        QCOMPARE(shared.sinks(), std::min({static_cast<int>(threads), parts, 8}));
    }
}

void TestParallelUnpacking::unpacksFilteredBlocks_data()
{
    QTest::addColumn<unsigned>("threads");
    QTest::addColumn<std::uint64_t>("memory");
    QTest::newRow("in one thread") << 1u << (std::uint64_t(1) << 30);
    QTest::newRow("in several threads") << 8u << (std::uint64_t(1) << 30);
    QTest::newRow("in one, for want of memory") << 8u << std::uint64_t(0);
}

void TestParallelUnpacking::unpacksFilteredBlocks()
{
    QFETCH(unsigned, threads);
    QFETCH(std::uint64_t, memory);
    const QByteArray &archive
        = packed(codeTree(), {"-mx=1", "-mf=BCJ", "-m0=LZMA2:d=1m:c=2m", "-mmt=2", "-mqs=off"});
    QVERIFY(partCount(archive) > 6);
    for (int round = 0; round < 3; ++round) {
        SharedTree shared;
        QCOMPARE(unpackShared(archive, shared, {threads, memory}), Status::Ok);
        QVERIFY2(shared.mistake().isEmpty(), qPrintable(shared.mistake()));
        QVERIFY(shared.tree() == codeTree());
        QCOMPARE(shared.sinks() > 1, threads > 1 && memory != 0);
    }
}

// A window of 1 MiB and the buffers come to 7 MiB.
void TestParallelUnpacking::keepsToTheMemoryGiven()
{
    const QByteArray &archive = packed(largeTree(), inBlocks);
    for (unsigned mebibytes : {0u, 7u, 20u, 21u}) {
        SharedTree shared;
        QCOMPARE(unpackShared(archive, shared, {8, std::uint64_t(mebibytes) << 20}), Status::Ok);
        QVERIFY(shared.tree() == largeTree());
        QCOMPARE(shared.sinks(), std::max(1, static_cast<int>(mebibytes / 7)));
    }
}

void TestParallelUnpacking::worksWithOneSinkOnly()
{
    Tree tree;
    MemorySource source(packed(largeTree(), inFolders));
    Archive archive(source);
    QCOMPARE(archive.open(0), Status::Ok);
    TreeSink sink;
    QCOMPARE(unpack(archive, sink, 1 << 30, {8}), Status::Ok);
    QVERIFY(sink.isConsistent);
    QVERIFY(sink.tree == largeTree());
}

void TestParallelUnpacking::findsDamageInEveryPart_data()
{
    QTest::addColumn<QStringList>("switches");
    QTest::newRow("blocks") << inBlocks;
    QTest::newRow("folders") << inFolders;
}

// Single bits, all over the packed data: in blocks' first bytes, their chunks' headers, their middle.
void TestParallelUnpacking::findsDamageInEveryPart()
{
    QFETCH(QStringList, switches);
    const QByteArray &whole = packed(largeTree(), switches);
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

void TestParallelUnpacking::stopsAtTheFirstFailure()
{
    const QByteArray &archive = packed(largeTree(), inBlocks);
    for (int writes : {0, 1, 7, 20}) {
        SharedTree shared;
        shared.failAfter(writes);
        QCOMPARE(unpackShared(archive, shared, {4}), Status::DiskFull);
        // The others end the write that they are at, or about to begin.
        QVERIFY2(shared.writes() <= writes + 1 + 2 * 3,
                 qPrintable(QString::number(shared.writes())));
    }
}

void TestParallelUnpacking::joinsChecksums()
{
    CrcGenerateTable();
    const QByteArray bytes = noise(70000, 5);
    for (qsizetype at : {0, 1, 2, 255, 256, 65535, 69999, 70000}) {
        const auto crcOf = [](const QByteArray &part) {
            return CrcCalc(part.constData(), static_cast<std::size_t>(part.size()));
        };
        QCOMPARE(joinCrc(crcOf(bytes.left(at)), crcOf(bytes.mid(at)),
                         static_cast<std::uint64_t>(bytes.size() - at)),
                 crcOf(bytes));
    }
}

QTEST_APPLESS_MAIN(TestParallelUnpacking)
#include "tst_parallelunpacking.moc"
