// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "icons/imageofpixmap.h"

#include "icons/iconextraction.h"
#include "tests/fakes/fakeplatform.h"
#include "tests/support/testicons.h"

#include <QPixmap>
#include <QRgba64>
#include <QTest>

namespace {

// Combines every opacity with every colour, to cover all rounding. Or all pixels are opaque.
QImage colourful(const QSize &size, bool opaque)
{
    QImage image(size, QImage::Format_ARGB32);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            const int alpha = opaque ? 255 : (x * 37 + y * 11) % 256;
            image.setPixel(x, y, qRgba((x * 5) % 256, (y * 7) % 256, (x * y) % 256, alpha));
        }
    }
    return image;
}

QImage filled(QImage::Format format, const QColor &colour)
{
    QImage image(9, 7, format);
    image.fill(colour);
    return image;
}

// All pixels have the first colour of the table.
QImage withTable(QImage::Format format, const QList<QRgb> &table)
{
    QImage image(9, 7, format);
    image.setColorTable(table);
    image.fill(0);
    return image;
}

QImage deep(quint16 alphaOfOnePixel)
{
    QImage image = filled(QImage::Format_RGBA64, Qt::red);
    auto *line = reinterpret_cast<QRgba64 *>(image.scanLine(3));
    line[4] = QRgba64::fromRgba64(0xffff, 0x1234, 0, alphaOfOnePixel);
    return image;
}

// Makes the icon from a real pixmap.
QByteArray iconByPixmap(const QImage &image)
{
    QPixmap pixmap = QPixmap::fromImage(image);
    if (pixmap.width() <= 255 || pixmap.height() <= 255) {
        pixmap = pixmap.scaled(256, 256, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    }
    QBuffer buffer;
    if (!buffer.open(QIODevice::WriteOnly) || !pixmap.save(&buffer, "ICO")) {
        qFatal("the pixmap could not be saved");
    }
    return buffer.data();
}

} // namespace

class TestImageOfPixmap : public QObject
{
    Q_OBJECT

private slots:
    void itIsThePixmapsImage_data()
    {
        QTest::addColumn<QImage>("image");
        const QRgb red = qRgb(255, 0, 0);
        const QRgb blue = qRgb(0, 0, 255);
        const QRgb clear = qRgba(0, 0, 0, 0);
        const QRgb half = qRgba(0, 128, 0, 128);
        for (const auto format : {QImage::Format_Mono, QImage::Format_MonoLSB}) {
            QTest::addRow("1 bit, %d", format) << withTable(format, {red, blue});
            QTest::addRow("1 bit, %d, unused and clear", format) << withTable(format, {red, clear});
            QTest::addRow("1 bit, %d, used and clear", format) << withTable(format, {clear, red});
        }
        const auto table = QImage::Format_Indexed8;
        QTest::newRow("8 bits") << withTable(table, {red, blue});
        QTest::newRow("8 bits, unused and clear") << withTable(table, {red, blue, clear});
        QTest::newRow("8 bits, unused and translucent") << withTable(table, {red, blue, half});
        QTest::newRow("8 bits, used and clear") << withTable(table, {clear, red});
        QTest::newRow("8 bits, used and translucent") << withTable(table, {half, red});
        QTest::newRow("16 bits a channel, opaque") << deep(0xffff);
        QTest::newRow("16 bits a channel, one pixel hardly translucent") << deep(0xfffe);
        QTest::newRow("16 bits a channel, one pixel clear") << deep(0);
        QTest::newRow("true colours with opacity") << colourful({64, 64}, false);
        QTest::newRow("true colours with opacity, all opaque") << colourful({64, 64}, true);
        // Formats that no file reader returns are left out: with them Qt counts opaque pixels as
        // translucent.
        const QList<QImage::Format> leftOut
            = {QImage::Format_ARGB8565_Premultiplied, QImage::Format_ARGB6666_Premultiplied,
               QImage::Format_ARGB8555_Premultiplied, QImage::Format_Alpha8};
        for (int format = QImage::Format_RGB32; format < QImage::NImageFormats; ++format) {
            const auto same = static_cast<QImage::Format>(format);
            if (leftOut.contains(same)) {
                continue;
            }
            QTest::addRow("format %d, opaque", format) << filled(same, QColor(12, 200, 77));
            QTest::addRow("format %d, translucent", format)
                << filled(same, QColor(12, 200, 77, 80));
        }
    }
    void itIsThePixmapsImage()
    {
        QFETCH(QImage, image);
        const QImage expected = QPixmap::fromImage(image).toImage();
        const QImage actual = imageOfPixmap(image);
        QCOMPARE(actual.hasAlphaChannel(), expected.hasAlphaChannel());
        QCOMPARE(actual.format(), expected.format());
        QCOMPARE(actual, expected);
    }

    void theIconsBytesAreThoseOfThePixmap_data()
    {
        QTest::addColumn<QImage>("image");
        for (const QSize size :
             {QSize(16, 16), QSize(32, 32), QSize(48, 48), QSize(48, 32), QSize(128, 128),
              QSize(256, 256), QSize(300, 280), QSize(512, 512)}) {
            QTest::addRow("%d x %d", size.width(), size.height()) << colourful(size, false);
            QTest::addRow("%d x %d, opaque", size.width(), size.height()) << colourful(size, true);
        }
    }
    void theIconsBytesAreThoseOfThePixmap()
    {
        QFETCH(QImage, image);
        FakePlatform platform;
        platform.icon = {ExtractedIcon::Outcome::Extracted, image};
        const QByteArray bytes = iconOfExecutable("/app/tool.exe", [](const QString &) {});
        QVERIFY(!bytes.isEmpty());
        QVERIFY(bytes == iconByPixmap(image));
    }
};

QTEST_MAIN(TestImageOfPixmap)
#include "tst_imageofpixmap.moc"
