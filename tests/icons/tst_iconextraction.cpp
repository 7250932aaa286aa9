// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "icons/iconextraction.h"

#include "packaging/worker.h"
#include "tests/fakes/fakeplatform.h"
#include "tests/support/testicons.h"

#include <QTest>

class TestIconExtraction : public QObject
{
    Q_OBJECT

private:
    struct Extraction
    {
        Extraction()
        {
            Worker worker;
            QObject::connect(&worker, &Worker::logMessage, &worker,
                             [this](const QString &text) { lines << text; });
            bytes = worker.extractIconFromExe("/app/tool.exe");
        }

        QStringList lines;
        QByteArray bytes;
    };

private slots:
    void sizeInTheIconFile_data()
    {
        QTest::addColumn<QSize>("drawn");
        QTest::addColumn<QSize>("encodedSize");
        QTest::newRow("a small icon is enlarged") << QSize(32, 32) << QSize(256, 256);
        QTest::newRow("the smallest") << QSize(1, 1) << QSize(256, 256);
        QTest::newRow("its aspect is kept, the short side rounded down")
            << QSize(48, 32) << QSize(256, 170);
        QTest::newRow("upright") << QSize(32, 48) << QSize(170, 256);
        QTest::newRow("one pixel short on both sides") << QSize(255, 255) << QSize(256, 256);
        QTest::newRow("one short side is enough to be scaled")
            << QSize(256, 128) << QSize(256, 128);
        QTest::newRow("a full-sized icon stays") << QSize(256, 256) << QSize(256, 256);
    }
    void sizeInTheIconFile()
    {
        QFETCH(QSize, drawn);
        FakePlatform platform;
        platform.icon = extractedIcon(drawn.width(), drawn.height());
        const Extraction extraction;
        QCOMPARE(extraction.lines,
                 QStringList{
                     QStringLiteral("成功提取图标，大小: %1 字节").arg(extraction.bytes.size())});
        QCOMPARE(platform.extractedFrom, "/app/tool.exe");
        QTEST(QImage::fromData(extraction.bytes, "ICO").size(), "encodedSize");
    }

    void pixelsOfAFullSizedIconAreKept()
    {
        FakePlatform platform;
        QImage image(256, 256, QImage::Format_ARGB32);
        image.fill(Qt::transparent);
        image.setPixel(0, 0, qRgba(255, 0, 0, 255));
        image.setPixel(255, 255, qRgba(0, 0, 255, 255));
        platform.icon = {ExtractedIcon::Outcome::Extracted, image};
        const QImage decoded = QImage::fromData(Extraction().bytes, "ICO");
        QCOMPARE(decoded.pixel(0, 0), qRgba(255, 0, 0, 255));
        QCOMPARE(decoded.pixel(255, 255), qRgba(0, 0, 255, 255));
        QCOMPARE(qAlpha(decoded.pixel(128, 128)), 0);
    }

    void scaling_data()
    {
        QTest::addColumn<QSize>("before");
        QTest::addColumn<QSize>("after");
        QTest::newRow("larger on both sides is never reduced")
            << QSize(300, 400) << QSize(300, 400);
        QTest::newRow("a wide one is fitted in") << QSize(512, 128) << QSize(256, 64);
    }
    void scaling()
    {
        QFETCH(QSize, before);
        QTEST(enlargedToIconSize(translucentImage(before.width(), before.height())).size(),
              "after");
    }

    void failures_data()
    {
        QTest::addColumn<int>("outcome");
        QTest::addColumn<QString>("line");
        QTest::newRow("no icon") << int(ExtractedIcon::Outcome::NoIcon)
                                 << "警告：无法从EXE提取图标";
        QTest::newRow("no information on the icon")
            << int(ExtractedIcon::Outcome::NoIconInfo) << "错误：无法获取图标信息";
        QTest::newRow("no pixels")
            << int(ExtractedIcon::Outcome::Extracted) << "错误：无法将图标转换为位图";
    }
    void failures()
    {
        QFETCH(int, outcome);
        QFETCH(QString, line);
        FakePlatform platform;
        platform.icon = {static_cast<ExtractedIcon::Outcome>(outcome), {}};
        const Extraction extraction;
        QCOMPARE(extraction.lines, QStringList{line});
        QVERIFY(extraction.bytes.isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestIconExtraction)
#include "tst_iconextraction.moc"
