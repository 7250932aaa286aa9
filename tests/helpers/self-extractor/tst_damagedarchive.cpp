// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/helpers/self-extractor/sfxtest.h"
#include "tests/helpers/self-extractor/zstdarchive.h"

#include <QRandomGenerator>
#include <QTest>
#include <QtEndian>

using namespace sfx;

// A damaged archive is either unpacked correctly or refused.
class TestDamagedArchive : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void refusesEveryTruncation_data() { addKinds(); }
    void refusesEveryTruncation();
    void neverAcceptsFlippedBits_data() { addKinds(); }
    void neverAcceptsFlippedBits();
    void survivesForgedHeaders();
    void boundsForgedSizes();

private:
    void addKinds();

    Tree m_tree;
};

void TestDamagedArchive::initTestCase()
{
    m_tree = mixedTree();
    for (QByteArray &content : m_tree) { // it is unpacked thousands of times, so it is small
        content.truncate(40000);
    }
}

void TestDamagedArchive::addKinds()
{
    QTest::addColumn<QByteArray>("archive");
    const auto row = [this](const char *name, const QStringList &switches) {
        QTest::newRow(name) << packTree(m_tree, switches);
    };
    row("LZMA", {"-mx=5", "-m0=LZMA"});
    row("LZMA2", {"-mx=5", "-m0=LZMA2"});
    row("BCJ2", {"-mx=3", "-mf=BCJ2", "-m0=LZMA"});
    row("stored", {"-mx=0"});
    row("an unpacked header", {"-mx=1", "-mhc=off"});
    QTest::newRow("Zstandard") << packZstd(m_tree, {.frames = {.level = 19}});
    QTest::newRow("Zstandard and the filter for x86") << packZstd(m_tree, {.isFiltered = true});
    QTest::newRow("Zstandard, with a small window")
        << packZstd(m_tree, {.frames = {.windowLog = 15, .hasContentSize = false}});
    QTest::newRow("Zstandard, in several solid blocks and frames")
        << packZstd(m_tree, {.blockSize = 30000, .frameSize = 9000, .hasSkippable = true});
}

void TestDamagedArchive::refusesEveryTruncation()
{
    QFETCH(QByteArray, archive);
    QVERIFY(archive.size() > 1000);
    QList<qsizetype> lengths;
    for (qsizetype i = 0; i < 100; ++i) {
        lengths << i << archive.size() - 1 - i << archive.size() * i / 100;
    }
    for (const qsizetype length : lengths) {
        Tree unpacked;
        const Status status = unpackBytes(archive.left(length), 0, unpacked);
        QVERIFY2(status == Status::Damaged, qPrintable(QString::number(length)));
    }
}

void TestDamagedArchive::neverAcceptsFlippedBits()
{
    QFETCH(QByteArray, archive);
    QRandomGenerator random(20);
    int refused = 0;
    for (int i = 0; i < 1000; ++i) {
        QByteArray flipped = archive;
        // A third of the changed bits lie in the headers, which are short.
        qsizetype at = random.bounded(archive.size());
        if (i % 3 == 0) {
            at = i % 2 == 0 ? random.bounded(32) : archive.size() - 1 - random.bounded(400);
        }
        flipped[at] = static_cast<char>(flipped[at] ^ (1 << random.bounded(8)));
        Tree unpacked;
        const Status status = unpackBytes(flipped, 0, unpacked);
        refused += status == Status::Ok ? 0 : 1;
        QVERIFY2(status != Status::Ok || unpacked == m_tree, qPrintable(QString::number(at)));
    }
    QVERIFY2(refused > 900, qPrintable(QString::number(refused)));
}

// Check sums protect the header's parser against accidents, not against attacks. Here they are
// corrected.
void TestDamagedArchive::survivesForgedHeaders()
{
    const Tree tree{{QStringLiteral("main.exe"), noise(3000, 1)},
                    {QStringLiteral("a/b.txt"), QByteArray(5000, 'b')},
                    {QStringLiteral("a/empty"), ""}};
    const QByteArray archive
        = packTree(tree, {QStringLiteral("-mhc=off"), QStringLiteral("-mf=BCJ2")});
    const auto header = static_cast<qsizetype>(qFromLittleEndian<quint64>(archive.data() + 12))
        + 32;
    QRandomGenerator random(21);
    int refused = 0;
    for (int i = 0; i < 20000; ++i) {
        QByteArray forged = archive;
        for (int flips = 1 + static_cast<int>(random.bounded(3)); flips > 0; --flips) {
            const qsizetype at = header + random.bounded(archive.size() - header);
            forged[at] = random.bounded(2) == 0
                ? static_cast<char>(random.generate())
                : static_cast<char>(forged[at] ^ (1 << random.bounded(8)));
        }
        resealArchive(forged);
        Tree unpacked;
        refused += unpackBytes(forged, 0, unpacked) == Status::Ok ? 0 : 1;
    }
    QVERIFY(refused > 10000);
}

void TestDamagedArchive::boundsForgedSizes()
{
    const QByteArray archive = packTree({{QStringLiteral("main.exe"), noise(3000, 1)}}, {});
    Tree unpacked;
    for (const quint64 size : {quint64(1) << 40, ~quint64(0), quint64(1) << 63}) {
        QByteArray forged = archive;
        qToLittleEndian<quint64>(size, forged.data() + 20);
        resealStart(forged);
        QCOMPARE(unpackBytes(forged, 0, unpacked), Status::Damaged);
        qToLittleEndian<quint64>(size, forged.data() + 12);
        resealStart(forged);
        QCOMPARE(unpackBytes(forged, 0, unpacked), Status::Damaged);
    }
    QCOMPARE(unpackBytes(archive, 0, unpacked), Status::Ok);
}

QTEST_APPLESS_MAIN(TestDamagedArchive)
#include "tst_damagedarchive.moc"
