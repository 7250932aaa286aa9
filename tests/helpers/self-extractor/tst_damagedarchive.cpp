// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/helpers/self-extractor/sfxtest.h"

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
    QTest::addColumn<QStringList>("switches");
    QTest::newRow("LZMA") << QStringList{"-mx=5", "-m0=LZMA"};
    QTest::newRow("LZMA2") << QStringList{"-mx=5", "-m0=LZMA2"};
    QTest::newRow("BCJ2") << QStringList{"-mx=3", "-mf=BCJ2", "-m0=LZMA"};
    QTest::newRow("stored") << QStringList{"-mx=0"};
    QTest::newRow("an unpacked header") << QStringList{"-mx=1", "-mhc=off"};
}

void TestDamagedArchive::refusesEveryTruncation()
{
    QFETCH(QStringList, switches);
    const QByteArray archive = packTree(m_tree, switches);
    QVERIFY(archive.size() > 1000);
    QList<qsizetype> lengths;
    for (qsizetype i = 0; i < 64; ++i) {
        lengths << i << archive.size() - 1 - i << archive.size() * i / 64;
    }
    for (const qsizetype length : lengths) {
        Tree unpacked;
        const Status status = unpackBytes(archive.left(length), 0, unpacked);
        QVERIFY2(status == Status::Damaged, qPrintable(QString::number(length)));
    }
}

void TestDamagedArchive::neverAcceptsFlippedBits()
{
    QFETCH(QStringList, switches);
    const QByteArray archive = packTree(m_tree, switches);
    QRandomGenerator random(20);
    int refused = 0;
    for (int i = 0; i < 500; ++i) {
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
    QVERIFY(refused > 450);
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
