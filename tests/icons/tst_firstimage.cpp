// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "icons/firstimage.h"

#include "icons/plainiconimages.h"
#include "packaging/worker.h"
#include "tests/support/testicons.h"

#include <QTest>
#include <QtEndian>

namespace {

// The verdict of the reader without Qt Gui.
QSize plainSize(const QByteArray &file)
{
    return PlainIconImages().sizeOfIcon(file).value_or(QSize(0, 0));
}

QSize sizeByQt(const QByteArray &file)
{
    // Qt warns about each offset that lies outside the file.
    const auto before = qInstallMessageHandler([](auto, const auto &, const auto &) {});
    const QSize size = QImage::fromData(file, "ICO").size();
    qInstallMessageHandler(before);
    return size;
}

template <typename Number>
void append(QByteArray &bytes, Number value)
{
    const Number little = qToLittleEndian(value);
    bytes.append(reinterpret_cast<const char *>(&little), sizeof little);
}

QByteArray icoOf(const QByteArray &image, int width, int height, quint16 bits)
{
    QByteArray file;
    for (const quint16 word : {quint16(0), quint16(1), quint16(1)}) {
        append(file, word);
    }
    file.append(char(width)).append(char(height)).append(2, 0);
    append<quint16>(file, 1);
    append(file, bits);
    append(file, quint32(image.size()));
    append<quint32>(file, 22);
    return file + image;
}

// A bitmap as icons hold it: header, palette, rows of the colours, rows of the mask.
QByteArray bitmap(int width, int height, quint16 bits, quint32 colours = 0)
{
    QByteArray image;
    for (const int number : {40, width, 2 * height}) {
        append(image, number);
    }
    append<quint16>(image, 1);
    append(image, bits);
    for (const quint32 number : {0U, 0U, 0U, 0U, colours, 0U}) {
        append(image, number);
    }
    const int palette = bits > 8 ? 0 : colours != 0 ? int(colours) : 1 << bits;
    const int rows = ((width * bits + 31) / 32 + (width + 31) / 32) * 4 * height;
    for (int i = 0; i < palette * 4 + rows; ++i) {
        image.append(char(bits == 8 && i >= palette * 4 ? i % palette : i * 37));
    }
    return image;
}

QByteArray pngIcon(QImage::Format format)
{
    QImage image = translucentImage(9, 7);
    image.setPixelColor(3, 3, Qt::red);
    return icoOf(encoded(image.convertToFormat(format), "PNG"), 9, 7, 32);
}

} // namespace

// Compares the reader of the terminal program with Qt's ICO reader, which the window uses.
class TestFirstImage : public QObject
{
    Q_OBJECT

private slots:
    void bothReadersAgree_data()
    {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QSize>("size");
        for (const int side : {1, 16, 31, 33, 255, 256}) {
            QTest::addRow("Qt's icon of %d pixels", side)
                << icoBytes(side, side) << QSize(side, side);
        }
        QTest::newRow("not square") << icoBytes(48, 32) << QSize(48, 32);
        for (const int bits : {1, 4, 8, 24, 32}) {
            QTest::addRow("a bitmap of %d bits", bits)
                << icoOf(bitmap(9, 7, quint16(bits)), 9, 7, quint16(bits)) << QSize(9, 7);
        }
        QTest::newRow("a small palette") << icoOf(bitmap(9, 7, 8, 3), 9, 7, 8) << QSize(9, 7);
        QTest::newRow("the side of 0 is 256 pixels")
            << icoOf(bitmap(256, 200, 4), 0, 200, 4) << QSize(256, 200);
        QTest::newRow("a bitmap of 300 pixels")
            << icoOf(bitmap(300, 8, 32), 0, 8, 32) << QSize(0, 0);
        QTest::newRow("16 bits") << icoOf(bitmap(9, 7, 16), 9, 7, 16) << QSize(0, 0);
        QTest::newRow("two bits") << icoOf(bitmap(9, 7, 2), 9, 7, 2) << QSize(0, 0);
        QTest::newRow("a palette of 257 colours")
            << icoOf(bitmap(9, 7, 8, 257), 9, 7, 8) << QSize(0, 0);
        QTest::newRow("neither kind of image")
            << icoOf(QByteArray(60, 'x'), 9, 7, 32) << QSize(0, 0);
        for (const auto format :
             {QImage::Format_ARGB32, QImage::Format_RGB32, QImage::Format_Indexed8,
              QImage::Format_Mono, QImage::Format_Grayscale8, QImage::Format_Grayscale16,
              QImage::Format_RGBA64}) {
            QTest::addRow("a PNG of Qt's format %d", int(format)) << pngIcon(format) << QSize(9, 7);
        }
    }
    void bothReadersAgree()
    {
        QFETCH(QByteArray, file);
        QTEST(plainSize(file), "size");
        QTEST(sizeByQt(file), "size");
    }

    void bothReadersAgreeOnEveryCut_data() { bothReadersAgree_data(); }
    void bothReadersAgreeOnEveryCut()
    {
        QFETCH(QByteArray, file);
        const qsizetype step = qMax(qsizetype(1), file.size() / 1000);
        for (qsizetype length = 0; length < file.size(); length += step) {
            const QByteArray cut = file.left(length);
            QVERIFY2(plainSize(cut) == sizeByQt(cut), qPrintable(QString::number(length)));
        }
    }

    void bothReadersAgreeOnEveryChangedByte_data() { bothReadersAgree_data(); }
    void bothReadersAgreeOnEveryChangedByte()
    {
        QFETCH(QByteArray, file);
        // Qt's reader does not look at a PNG after its pixels. Ours does.
        const qsizetype pixelsEnd = file.indexOf("IEND") - 4;
        const bool isPng = pixelsEnd > 0;
        const qsizetype end = qMin(isPng ? pixelsEnd : file.size(), qsizetype(400));
        for (qsizetype place = 4; place < end; ++place) { // other checks read the first four
            if (isPng && place >= 14 && place < 18) {
                continue; // the image's length: the same
            }
            for (const char change : {char(1), char(0x80), char(0xff)}) {
                if (place == 57 && (change & 0x80) != 0) {
                    continue; // the sign of the palette's size, which only Qt takes for a sign
                }
                QByteArray changed = file;
                changed[place] = char(changed[place] ^ change);
                QVERIFY2(plainSize(changed) == sizeByQt(changed),
                         qPrintable(QStringLiteral("byte %1 xor %2").arg(place).arg(int(change))));
            }
        }
    }

    // The window's programs must not get the plain reader.
    void theLibraryForTheWindowUsesQt()
    {
        QByteArray file = pngIcon(QImage::Format_ARGB32);
        const qsizetype data = file.indexOf("IDAT") + 4;
        file[data] = char(file[data] ^ 0xff); // a wrong check sum, which both refuse
        QVERIFY(!dynamic_cast<PlainIconImages *>(&iconImages()));
        QVERIFY(!Worker().validateIconData(file));
    }
};

QTEST_GUILESS_MAIN(TestFirstImage)
#include "tst_firstimage.moc"
