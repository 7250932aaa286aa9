// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/helpers/self-extractor/damagedproduct.h"
#include "tests/helpers/self-extractor/modulerun.h"

#include <QTest>

using namespace sfx;

// A whole produced file (module, block and archive) that was truncated or changed. No program is
// started here; tst_selfextractor does that.
class TestDamagedProduct : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void unpacksWhole();
    void refusesEveryTruncation_data();
    void refusesEveryTruncation();
    void neverUnpacksSomethingElse_data();
    void neverUnpacksSomethingElse();

private:
    Tree m_tree;
    QByteArray m_head;    // the module
    QByteArray m_product; // with block and archive
    QByteArray m_stored;  // the same, not compressed: only check sums show damage
};

void TestDamagedProduct::initTestCase()
{
    m_tree = mixedTree();
    for (QByteArray &content : m_tree) { // it is unpacked thousands of times, so it is small
        content.truncate(30000);
    }
    m_tree.remove(QStringLiteral("noise.dat"));
    m_head = contentOf(QStringLiteral(KESTRELPACK_TEST_MODULE));
    const QByteArray archive = packTree(m_tree, {QStringLiteral("-mx=5")});
    const QByteArray stored = packTree(m_tree, {QStringLiteral("-mx=0")});
    QVERIFY(!m_head.isEmpty() && !archive.isEmpty() && !stored.isEmpty());
    const QByteArray block = ModuleRun::blockFor(QStringLiteral("main.exe"));
    m_product = m_head + block + archive;
    m_stored = m_head + block + stored;
}

void TestDamagedProduct::unpacksWhole()
{
    Tree unpacked;
    QCOMPARE(unpackProduct(m_product, unpacked), Status::Ok);
    QVERIFY(unpacked == m_tree);
    QCOMPARE(unpackProduct(m_stored, unpacked), Status::Ok);
    QVERIFY(unpacked == m_tree);
}

void TestDamagedProduct::refusesEveryTruncation_data()
{
    QTest::addColumn<bool>("ofThePayload");
    QTest::newRow("of the whole file") << false;
    QTest::newRow("of block and archive") << true;
}

void TestDamagedProduct::refusesEveryTruncation()
{
    QFETCH(bool, ofThePayload);
    const qsizetype begin = ofThePayload ? m_head.size() : 0;
    for (int percent = 0; percent < 100; ++percent) {
        const qsizetype length = begin + (m_product.size() - begin) * percent / 100;
        Tree unpacked;
        const Status status = unpackProduct(m_product.left(length), unpacked);
        QVERIFY2(status == Status::Damaged, qPrintable(QString::number(percent)));
        QVERIFY2(unpacked != m_tree, qPrintable(QString::number(percent)));
    }
}

void TestDamagedProduct::neverUnpacksSomethingElse_data()
{
    QTest::addColumn<QByteArray>("product");
    QTest::addColumn<int>("begin");
    QTest::addColumn<int>("length");
    QTest::addColumn<int>("mostUnharmed");
    const auto head = static_cast<int>(m_head.size());
    const auto block = static_cast<int>(ModuleRun::blockFor(QStringLiteral("main.exe")).size());
    const auto size = static_cast<int>(m_product.size());
    const auto storedSize = static_cast<int>(m_stored.size());
    QTest::newRow("block and archive") << m_product << head << size - head << 20;
    QTest::newRow("block and stored archive") << m_stored << head << storedSize - head << 20;
    // Most bytes of the module are text that does not affect unpacking.
    QTest::newRow("the block alone") << m_product << head << block << 600;
    QTest::newRow("the start header alone") << m_product << head + block << 32 << 60;
    QTest::newRow("the header alone") << m_product << size - 200 << 200 << 60;
}

void TestDamagedProduct::neverUnpacksSomethingElse()
{
    QFETCH(QByteArray, product);
    QFETCH(int, begin);
    QFETCH(int, length);
    QFETCH(int, mostUnharmed);
    constexpr quint32 seed = 20261121;
    QRandomGenerator random(seed);
    int unharmed = 0;
    for (int i = 0; i < 1000; ++i) {
        QByteArray part = product.mid(begin, length);
        const qsizetype at = flipByte(part, 0, random);
        Tree unpacked;
        const Status status
            = unpackProduct(product.left(begin) + part + product.mid(begin + length), unpacked);
        QVERIFY2(status != Status::Ok || unpacked == m_tree, qPrintable(QString::number(at)));
        unharmed += status == Status::Ok ? 1 : 0;
    }
    qInfo("seed %u: %d of 1000 altered files unpack to the same", seed, unharmed);
    QVERIFY(unharmed <= mostUnharmed);
}

QTEST_APPLESS_MAIN(TestDamagedProduct)
#include "tst_damagedproduct.moc"
