// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "platform/iconsource.h"

#include "icons/plainiconimages.h"
#include "packaging/worker.h"

#include <QTest>

// Tests the native platform with real program files.
class TestIconOfProgramUnix : public QObject
{
    Q_OBJECT

private slots:
    void theLargestImageOfTheExamplesIcon()
    {
        const ExtractedIcon icon = iconSource().extractIcon(KESTRELPACK_HELLO_EXE);
        QCOMPARE(icon.outcome, ExtractedIcon::Outcome::Extracted);
        QCOMPARE(icon.image.size(), QSize(256, 256));
        QCOMPARE(icon.image.format(), QImage::Format_ARGB32);
        QCOMPARE(qAlpha(icon.image.pixel(0, 0)), 0);
        QCOMPARE(icon.image.pixel(128, 20),
                 qRgba(0xf5, 0xa6, 0x23, 255)); // the face, above the eyes
        QCOMPARE(icon.image.pixel(128, 190), qRgba(0x34, 0x49, 0x5e, 255)); // the mouth, below them
    }

    void filesWithoutAnIcon_data()
    {
        QTest::addColumn<QString>("path");
        QTest::newRow("a program without an icon") << KESTRELPACK_ICONLESS_EXE;
        QTest::newRow("no program") << __FILE__;
        QTest::newRow("a missing file") << "/missing/a.exe";
        QTest::newRow("a folder") << "/";
    }
    void filesWithoutAnIcon()
    {
        QFETCH(QString, path);
        Worker worker;
        QStringList lines;
        connect(&worker, &Worker::logMessage, &worker,
                [&lines](const QString &text) { lines << text; });
        QVERIFY(worker.extractIconFromExe(path).isEmpty());
        QCOMPARE(lines, QStringList{"警告：无法从EXE提取图标"});
    }

    // Without Qt Gui, as in the terminal program.
    void theSameImageWithoutDecoding()
    {
        QStringList lines;
        const LogSink log = [&lines](const QString &text) {
            lines << text;
        };
        PlainIconImages images;
        const QByteArray icon = images.iconOfExecutable(KESTRELPACK_HELLO_EXE, log);
        QCOMPARE(images.sizeOfIcon(icon), QSize(256, 256));
        QCOMPARE(QImage::fromData(icon, "ICO").convertToFormat(QImage::Format_ARGB32),
                 iconSource().extractIcon(KESTRELPACK_HELLO_EXE).image);
        QVERIFY(images.iconOfExecutable(KESTRELPACK_ICONLESS_EXE, log).isEmpty());
        QCOMPARE(lines,
                 (QStringList{QStringLiteral("成功提取图标，大小: %1 字节").arg(icon.size()),
                              "警告：无法从EXE提取图标"}));
    }
};

QTEST_GUILESS_MAIN(TestIconOfProgramUnix)
#include "tst_iconofprogram_unix.moc"
