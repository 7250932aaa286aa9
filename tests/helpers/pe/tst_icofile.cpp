// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/pe/icofile.h"

#include "tests/helpers/pe/petest.h"

#include <QTest>

class TestIcoFile : public QObject
{
    Q_OBJECT

private:
    static auto parse(const QByteArray &icon)
    {
        return pe::parseIcoFile({reinterpret_cast<const std::uint8_t *>(icon.constData()),
                                 static_cast<std::size_t>(icon.size())});
    }

private slots:
    void everyImageIsFound()
    {
        const QByteArray icon = petest::makeIcon({16, 32, 48, 256});
        const auto images = parse(icon);
        QVERIFY(!images.hasError());
        QCOMPARE(images.value().size(), 4U);
    }

    void badIcons_data()
    {
        QTest::addColumn<QByteArray>("icon");
        const QByteArray good = petest::makeIcon({16, 32});
        QByteArray cursor = good;
        cursor[2] = 2;
        QByteArray far = good;
        far[6 + 12 + 3] = 0x7f; // the first image's offset
        QByteArray longImage = good;
        longImage[6 + 8 + 3] = 0x7f; // its length
        QByteArray many = good;
        many[5] = '\xff';
        QByteArray shared = good;
        shared.replace(6 + 8, 8, good.mid(6 + 16 + 8, 8)); // both entries: one image
        QTest::newRow("images longer than the file together") << shared;
        QTest::newRow("more images than any icon has") << petest::makeIcon(QList<int>(1025, 16));
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("header only") << QByteArray("\0\0\1\0\0\0", 6);
        QTest::newRow("a cursor") << cursor;
        QTest::newRow("cut off in the header") << good.left(5);
        QTest::newRow("cut off in the directory") << good.left(20);
        QTest::newRow("cut off in an image") << good.chopped(1);
        QTest::newRow("an image behind the end") << far;
        QTest::newRow("an image longer than the file") << longImage;
        QTest::newRow("more images than there is room for") << many;
    }
    void badIcons()
    {
        QFETCH(QByteArray, icon);
        QVERIFY(parse(icon).hasError());
    }
};

QTEST_APPLESS_MAIN(TestIcoFile)
#include "tst_icofile.moc"
