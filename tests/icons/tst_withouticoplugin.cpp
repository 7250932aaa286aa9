// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "packaging/worker.h"

#include "tests/fakes/fakeplatform.h"

#include <QCoreApplication>
#include <QTest>

// Tests the icon functions when Qt can neither read nor write ICO. Qt searches for its image
// plugins only once, so this is a separate program. The icon's bytes are written by hand.
class TestWithoutIcoPlugin : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QCoreApplication::setLibraryPaths({}); }

    void init()
    {
        lines.clear();
        worker.disconnect();
        connect(&worker, &Worker::logMessage, this, [this](const QString &text) { lines << text; });
    }

    void extractionCannotEncode()
    {
        FakePlatform platform;
        QImage image(32, 32, QImage::Format_ARGB32);
        image.fill(Qt::red);
        platform.icon = {ExtractedIcon::Outcome::Extracted, image};
        QVERIFY(worker.extractIconFromExe("/app/tool.exe").isEmpty());
        QCOMPARE(lines, QStringList{"错误：图标转换失败"});
    }

    void validationCannotDecode()
    {
        // A valid icon: one image of one white pixel, 32 bits deep.
        const QByteArray icon
            = QByteArray::fromHex("000001000100"                     // header
                                  "01010000010020003000000016000000" // entry
                                  "280000000100000002000000010020000000000008000000"
                                  "00000000000000000000000000000000"
                                  "ffffffff00000000"); // pixel and mask
        QVERIFY(!worker.validateIconData(icon));
        QCOMPARE(lines, QStringList{"无法将数据加载为ICO格式"});
    }

private:
    Worker worker;
    QStringList lines;
};

QTEST_GUILESS_MAIN(TestWithoutIcoPlugin)
#include "tst_withouticoplugin.moc"
