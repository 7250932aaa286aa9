// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "packaging/compressionoptions.h"

#include <QTest>

class TestCompressionOptions : public QObject
{
    Q_OBJECT

private slots:
    void level_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<QString>("text");
        QTest::newRow("store") << 0 << "0";
        QTest::newRow("fastest") << 1 << "1";
        QTest::newRow("fast") << 2 << "3";
        QTest::newRow("normal") << 3 << "5";
        QTest::newRow("maximum") << 4 << "7";
        QTest::newRow("ultra") << 5 << "9";
        QTest::newRow("nothing selected is normal") << -1 << "5";
        QTest::newRow("behind the list is normal") << 6 << "5";
        QTest::newRow("far outside is normal") << INT_MIN << "5";
    }
    void level()
    {
        QFETCH(int, index);
        QTEST(compressionLevelText(index), "text");
    }

    void method_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<QString>("text");
        QTest::newRow("first") << 0 << "LZMA";
        QTest::newRow("second") << 1 << "LZMA2";
        QTest::newRow("nothing selected is the first") << -1 << "LZMA";
        QTest::newRow("behind the list is the first") << 2 << "LZMA";
    }
    void method()
    {
        QFETCH(int, index);
        QTEST(compressionMethodText(index), "text");
    }

    void dictionarySize_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<QString>("text");
        QTest::newRow("64 KB") << 0 << "64K";
        QTest::newRow("1 MB") << 1 << "1M";
        QTest::newRow("16 MB") << 2 << "16M";
        QTest::newRow("32 MB") << 3 << "32M";
        QTest::newRow("64 MB") << 4 << "64M";
        QTest::newRow("nothing selected is 16 MB") << -1 << "16M";
        QTest::newRow("behind the list is 16 MB") << 5 << "16M";
    }
    void dictionarySize()
    {
        QFETCH(int, index);
        QTEST(dictionarySizeText(index), "text");
    }
};

QTEST_APPLESS_MAIN(TestCompressionOptions)
#include "tst_compressionoptions.moc"
