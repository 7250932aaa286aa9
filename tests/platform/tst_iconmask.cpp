// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "platform/iconmask.h"

#include <QTest>

// Images of three pixels in a row, and masks of as many bits.
class TestIconMask : public QObject
{
    Q_OBJECT

private:
    static QImage imageOf(const QList<QRgb> &pixels)
    {
        QImage image(int(pixels.size()), 1, QImage::Format_ARGB32);
        for (int x = 0; x < image.width(); ++x) {
            image.setPixel(x, 0, pixels[x]);
        }
        return image;
    }

    static QImage maskOf(const QList<int> &bits)
    {
        QImage mask(int(bits.size()), 1, QImage::Format_Mono);
        for (int x = 0; x < mask.width(); ++x) {
            mask.setPixel(x, 0, uint(bits[x]));
        }
        return mask;
    }

private slots:
    void opacity_data()
    {
        QTest::addColumn<QList<QRgb>>("before");
        QTest::addColumn<QList<int>>("mask");
        QTest::addColumn<QList<QRgb>>("after");
        const QList<QRgb> none{0x00112233, 0x00000000, 0x00445566};
        const QList<QRgb> some{0x00112233, 0x01000000, 0x00445566};
        QTest::newRow("none: opaque where the mask is clear")
            << none << QList<int>{0, 1, 0} << QList<QRgb>{0xff112233, 0x00000000, 0xff445566};
        QTest::newRow("none, and black: the mask alone decides")
            << QList<QRgb>{0, 0, 0} << QList<int>{1, 0, 1} << QList<QRgb>{0, 0xff000000, 0};
        QTest::newRow("none, and all masked") << none << QList<int>{1, 1, 1} << none;
        QTest::newRow("of one pixel: the image stays") << some << QList<int>{0, 0, 0} << some;
        QTest::newRow("none, with a mask of another size") << none << QList<int>{0, 0} << none;
        QTest::newRow("none, without a mask") << none << QList<int>{} << none;
    }
    void opacity()
    {
        QFETCH(QList<QRgb>, before);
        QFETCH(QList<int>, mask);
        QFETCH(QList<QRgb>, after);
        QImage image = imageOf(before);
        useMaskWithoutOpacity(image, maskOf(mask));
        QCOMPARE(image, imageOf(after));
    }

    // 8 x 3 pixels, so that a mistake in any bit of a byte or any row shows.
    void everyBitIsInItsPlace()
    {
        QImage mask(8, 3, QImage::Format_Mono);
        mask.fill(1);
        mask.setPixel(6, 1, 0);
        QImage image(8, 3, QImage::Format_ARGB32);
        image.fill(0);
        QImage expected = image;
        expected.setPixel(6, 1, 0xff000000);
        useMaskWithoutOpacity(image, mask);
        QCOMPARE(image, expected);
    }
};

QTEST_APPLESS_MAIN(TestIconMask)
#include "tst_iconmask.moc"
