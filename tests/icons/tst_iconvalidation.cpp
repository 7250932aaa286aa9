// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "packaging/worker.h"

#include "tests/support/testicons.h"

#include <QTest>

class TestIconValidation : public QObject
{
    Q_OBJECT

private slots:
    void verdictAndLine_data()
    {
        QTest::addColumn<QByteArray>("data");
        QTest::addColumn<bool>("usable");
        QTest::addColumn<QString>("line");
        const QString tooSmall = "图标数据太小，至少需要6字节";
        const QString badHeader = "无效的ICO文件头";
        const QString undecodable = "无法将数据加载为ICO格式";
        QByteArray cursor = icoBytes(32, 32);
        cursor[2] = 2;
        const QByteArray png = encoded(translucentImage(16, 16), "PNG");

        QTest::newRow("nothing") << QByteArray() << false << tooSmall;
        QTest::newRow("five bytes of a right header")
            << QByteArray("\0\0\1\0\0", 5) << false << tooSmall;
        QTest::newRow("five bytes of anything") << QByteArray("xxxxx") << false << tooSmall;
        QTest::newRow("a header that declares no image")
            << QByteArray("\0\0\1\0\0\0", 6) << false << undecodable;
        QTest::newRow("a header whose image is missing")
            << QByteArray("\0\0\1\0\1\0", 6) << false << undecodable;
        QTest::newRow("first byte not 0") << QByteArray("\1\0\1\0\1\0", 6) << false << badHeader;
        QTest::newRow("second byte not 0") << QByteArray("\0\1\1\0\1\0", 6) << false << badHeader;
        QTest::newRow("fourth byte not 0") << QByteArray("\0\0\1\1\1\0", 6) << false << badHeader;
        QTest::newRow("a cursor file") << cursor << false << badHeader;
        QTest::newRow("a PNG file") << png << false << badHeader;
        QTest::newRow("a BMP file")
            << encoded(translucentImage(16, 16), "BMP") << false << badHeader;
        QTest::newRow("an icon cut off in its image")
            << icoBytes(32, 32).left(40) << false << undecodable;
        QTest::newRow("the largest icon")
            << icoBytes(256, 256) << true << "图标验证通过 - 尺寸: 256x256";
        QTest::newRow("a small icon that is not square")
            << icoBytes(48, 32) << true << "图标验证通过 - 尺寸: 48x32";
    }
    void verdictAndLine()
    {
        QFETCH(QByteArray, data);
        QFETCH(QString, line);
        Worker worker;
        QStringList lines;
        connect(&worker, &Worker::logMessage, &worker,
                [&lines](const QString &text) { lines << text; });
        QTEST(worker.validateIconData(data), "usable");
        QCOMPARE(lines, QStringList{line});
    }
};

QTEST_GUILESS_MAIN(TestIconValidation)
#include "tst_iconvalidation.moc"
