// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/unpacking/slowclosing.h"

#include <QTest>

// When the closing of files is left to other threads.
class TestSlowClosing : public QObject
{
    Q_OBJECT

private slots:
    void isWhatThreadsMakeFaster_data();
    void isWhatThreadsMakeFaster();
};

void TestSlowClosing::isWhatThreadsMakeFaster_data()
{
    QTest::addColumn<quint64>("microseconds");
    QTest::addColumn<quint64>("files");
    QTest::addColumn<bool>("slow");
    QTest::newRow("nothing has been closed") << quint64(0) << quint64(0) << false;
    QTest::newRow("a few files, one of them large") << quint64(19000) << quint64(3) << false;
    QTest::newRow("one file that a scanner has read for long")
        << quint64(20000) << quint64(1) << true;
    QTest::newRow("many files without a scanner") << quint64(150000) << quint64(5000) << false;
    QTest::newRow("many files, each nearly slow") << quint64(299999) << quint64(1000) << false;
    QTest::newRow("many files, each just slow") << quint64(300000) << quint64(1000) << true;
    QTest::newRow("the first ten files with a scanner") << quint64(20000) << quint64(10) << true;
}

void TestSlowClosing::isWhatThreadsMakeFaster()
{
    QFETCH(quint64, microseconds);
    QFETCH(quint64, files);
    QFETCH(bool, slow);
    // Windows 10 counts ten millions in a second; older systems count millions.
    for (const quint64 ticks : {10u, 3u}) {
        QCOMPARE(sfx::isClosingSlow(microseconds * ticks, files, ticks * 1000000), slow);
    }
}

QTEST_APPLESS_MAIN(TestSlowClosing)
#include "tst_slowclosing.moc"
