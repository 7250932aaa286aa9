// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "svg/svgdrawing.h"

#include "tests/support/testfiles.h"

#include <QImageReader>
#include <QTest>

#include <cmath>
#include <utility>

namespace {

// The maximum is 255. The two renderers draw edges differently, so single pixels on an edge may
// differ. Areas must not.
constexpr double tolerableMean = 2.0;

QImage drawnByQt(const QString &path, const QSize &size)
{
    QImageReader reader(path, "svg");
    reader.setScaledSize(size);
    return reader.read();
}

// The mean difference of the channels of all pixels, with premultiplied opacity.
double meanDifference(const QImage &left, const QImage &right)
{
    const QImage a = left.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    const QImage b = right.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    double sum = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < 4 * a.width(); ++x) {
            sum += std::abs(a.constScanLine(y)[x] - b.constScanLine(y)[x]);
        }
    }
    return sum / (4.0 * a.width() * a.height());
}

} // namespace

class TestSvgDrawing : public QObject
{
    Q_OBJECT

private slots:
    void drawsAsQtDoes_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<int>("side");
        // The sizes in which screens with a scale of 100, 150 and 200 % show them.
        const std::pair<const char *, QList<int>> shown[] = {
            {"foundation", {24, 36, 48}}, {"foundation-hover", {24, 36, 48}},
            {"senior", {24, 36, 48}},     {"senior-hover", {24, 36, 48}},
            {"nav", {16, 24, 32}},        {"min", {16, 24, 32}},
            {"close", {16, 24, 32}},      {"logo", {26, 39, 52, 64, 96, 128}},
        };
        for (const auto &[name, sides] : shown) {
            for (const int side : sides) {
                QTest::addRow("%s at %d", name, side)
                    << QStringLiteral(":/icons/%1.svg").arg(QLatin1String(name)) << side;
            }
        }
    }

    void drawsAsQtDoes()
    {
        QFETCH(QString, path);
        QFETCH(int, side);
        const SvgDrawing drawing(contentOf(path));
        QVERIFY(!drawing.isEmpty());
        const QImage ours = drawing.render({side, side});
        const QImage reference = drawnByQt(path, {side, side});
        QCOMPARE(ours.size(), QSize(side, side));
        QCOMPARE(reference.size(), QSize(side, side));
        const double difference = meanDifference(ours, reference);
        QVERIFY2(difference < tolerableMean, qPrintable(QString::number(difference)));
    }

    void differentDrawingsAreToldApart()
    {
        const QImage menu = drawnByQt(":/icons/nav.svg", {24, 24});
        const QImage close = drawnByQt(":/icons/close.svg", {24, 24});
        QVERIFY(meanDifference(menu, close) > 4 * tolerableMean);
    }

    void keepsTheShape()
    {
        const SvgDrawing drawing(
            "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"10\" height=\"10\">"
            "<rect width=\"10\" height=\"10\" fill=\"#ff0000\"/></svg>");
        QCOMPARE(drawing.size(), QSizeF(10, 10));
        const QImage wide = drawing.render({40, 20}); // in the middle, as large as possible
        QCOMPARE(wide.pixelColor(20, 10), QColor(255, 0, 0));
        QCOMPARE(wide.pixelColor(4, 10).alpha(), 0);
        QCOMPARE(wide.pixelColor(35, 10).alpha(), 0);
    }

    void whatIsNoDrawingIsEmpty_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("text") << QByteArray("no drawing");
        QTest::newRow("cut off") << QByteArray("<svg width=\"1");
    }

    void whatIsNoDrawingIsEmpty()
    {
        QFETCH(QByteArray, content);
        const SvgDrawing drawing(content);
        QVERIFY(drawing.isEmpty());
        QVERIFY(drawing.render({16, 16}).isNull());
    }
};

QTEST_MAIN(TestSvgDrawing)

#include "tst_svgdrawing.moc"
