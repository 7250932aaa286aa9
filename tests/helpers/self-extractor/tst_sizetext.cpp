// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/start/sizetext.h"

#include <QTest>

// Sizes in bytes, as messages show them.
class TestSizeText : public QObject
{
    Q_OBJECT

private slots:
    void isRoundedUp_data();
    void isRoundedUp();
};

void TestSizeText::isRoundedUp_data()
{
    QTest::addColumn<quint64>("bytes");
    QTest::addColumn<QString>("shown");
    constexpr quint64 mega = 1024 * 1024;
    constexpr quint64 giga = 1024 * mega;
    QTest::newRow("nothing is shown as the least") << quint64(0) << "1 MB";
    QTest::newRow("a byte") << quint64(1) << "1 MB";
    QTest::newRow("one megabyte") << mega << "1 MB";
    QTest::newRow("a byte more") << mega + 1 << "2 MB";
    QTest::newRow("the most megabytes") << 1023 * mega << "1023 MB";
    QTest::newRow("almost a gigabyte") << giga - 1 << "1.0 GB";
    QTest::newRow("a gigabyte") << giga << "1.0 GB";
    QTest::newRow("a byte beyond a gigabyte") << giga + 1 << "1.1 GB";
    QTest::newRow("tenths that carry") << 5 * giga - 1 << "5.0 GB";
    QTest::newRow("more than any disk has") << ~quint64(0) << "17179869184.0 GB";
}

void TestSizeText::isRoundedUp()
{
    QFETCH(quint64, bytes);
    sfx::Text text;
    QVERIFY(sfx::appendSize(text, bytes));
    QTEST(QString::fromUtf16(text.data(), static_cast<qsizetype>(text.size())), "shown");
}

QTEST_APPLESS_MAIN(TestSizeText)
#include "tst_sizetext.moc"
