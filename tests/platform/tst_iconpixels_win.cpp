// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "platform/iconsource.h"

#include "packaging/worker.h"
#include "tests/helpers/pe/petest.h"
#include "tests/platform/handlecount_win.h"
#include "tests/support/builtfile.h"
#include "tests/support/testfiles.h"

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <cstdlib>

namespace {

// The difference of two images of the same size: the mean over pixels and channels, 0 to 255.
double difference(const QImage &one, const QImage &other)
{
    double sum = 0;
    for (int y = 0; y < one.height(); ++y) {
        for (int x = 0; x < one.width(); ++x) {
            const QRgb a = one.pixel(x, y);
            const QRgb b = other.pixel(x, y);
            sum += std::abs(qRed(a) - qRed(b)) + std::abs(qGreen(a) - qGreen(b))
                + std::abs(qBlue(a) - qBlue(b)) + std::abs(qAlpha(a) - qAlpha(b));
        }
    }
    return sum / (4.0 * one.width() * one.height());
}

// Draws `icon` on an empty ground: the colours are weighted by the opacity.
QImage drawnOnNothing(const QImage &icon)
{
    QImage image = icon.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    image.reinterpretAsFormat(QImage::Format_ARGB32);
    return image;
}

// An icon file with one image, `bits` deep (1 or 32), all black (and opaque).
QByteArray blackIcon(int width, int height, int bits)
{
    const auto number = [](qint64 value, int size) {
        QByteArray bytes;
        for (int i = 0; i < size; ++i) {
            bytes.append(static_cast<char>(value >> (8 * i)));
        }
        return bytes;
    };
    const int maskRow = (width + 31) / 32 * 4;
    QByteArray pixels;
    if (bits == 1) {
        pixels = number(0x00FFFFFF00000000, 8)
            + QByteArray(maskRow * height, '\0'); // colours first
    } else {
        pixels = number(0xFF000000, 4).repeated(width * height);
    }
    const QByteArray image = number(40, 4) + number(width, 4) + number(2 * height, 4) + number(1, 2)
        + number(bits, 2) + QByteArray(24, '\0') + pixels + QByteArray(maskRow * height, '\0');
    return number(0, 2) + number(1, 2) + number(1, 2) + number(width, 1) + number(height, 1)
        + number(bits == 1 ? 2 : 0, 2) + number(1, 2) + number(bits, 2) + number(image.size(), 4)
        + number(22, 4) + image;
}

} // namespace

// Tests the native platform with real program files. The folder also has the images that another
// reader made from their icons.
class TestIconPixelsWin : public QObject
{
    Q_OBJECT

private:
    // Makes a program whose only icon is `icon`.
    static QString programWith(const QTemporaryDir &dir, const QByteArray &icon)
    {
        petest::Recipe recipe;
        recipe.icons = false;
        const QString program = dir.filePath("程序 a.exe");
        const QString iconFile = dir.filePath("a.ico");
        if (!writeFile(program, petest::makeProgram(recipe)) || !writeFile(iconFile, icon)
            || QProcess::execute(builtFile(KESTRELPACK_RESOURCE_EDITOR),
                                 {"-open", program, "-save", program, "-action", "addoverwrite",
                                  "-resource", iconFile, "-mask", "ICONGROUP,MAINICON,", "-log",
                                  "NUL"})
                != 0) {
            qFatal("the program could not be made");
        }
        return program;
    }

    struct Extraction
    {
        QImage image;
        QStringList lines;
    };

    static Extraction extract(const QString &program)
    {
        Worker worker;
        Extraction result;
        connect(&worker, &Worker::logMessage, &worker,
                [&result](const QString &text) { result.lines << text; });
        const QByteArray icon = worker.extractIconFromExe(program);
        result.image.loadFromData(icon, "ICO");
        return result;
    }

private slots:
    void realProgramsShowTheirIcons_data()
    {
        QTest::addColumn<QString>("name");
        const QDir folder(builtFile(KESTRELPACK_ICON_REFERENCES));
        const QStringList programs = folder.entryList({"*.exe"}, QDir::Files, QDir::Name);
        QCOMPARE(programs.size(), 5);
        for (const QString &program : programs) {
            const QString name = program.chopped(4);
            QTest::newRow(qPrintable(name)) << name;
        }
    }

    // The image must match the other reader's image. It must be far from that image turned upside
    // down, mirrored, or with red and blue exchanged.
    void realProgramsShowTheirIcons()
    {
        QFETCH(QString, name);
        const QDir folder(builtFile(KESTRELPACK_ICON_REFERENCES));
        const ExtractedIcon icon = iconSource().extractIcon(folder.filePath(name + ".exe"));
        QCOMPARE(icon.outcome, ExtractedIcon::Outcome::Extracted);
        QCOMPARE(icon.image.format(), QImage::Format_ARGB32);
        // Windows returns the small icon. Wine returns the large one, because it reports no icon
        // count for this call.
        const int side = icon.image.width();
        QVERIFY(icon.image.size() == QSize(side, side) && (side == 16 || side == 32));

        const QImage original(folder.filePath(QStringLiteral("%1-%2.png").arg(name).arg(side)));
        QCOMPARE(original.size(), icon.image.size());
        const QImage expected = drawnOnNothing(original);
        const double distance = difference(icon.image, expected);
        for (const QImage &wrong : {expected.mirrored(false, true), expected.mirrored(true, false),
                                    expected.rgbSwapped()}) {
            if (difference(expected, wrong) > 4) { // false if the image is symmetric
                const double far = difference(icon.image, wrong);
                QVERIFY2(distance * 2 < far,
                         qPrintable(QStringLiteral("%1, %2").arg(distance).arg(far)));
            }
        }
        QVERIFY2(distance < 1, qPrintable(QString::number(distance))); // rounding differences
        if (name.startsWith("nsis")) { // no opacity: the mask alone decides every pixel
            QCOMPARE(icon.image.convertToFormat(QImage::Format_Alpha8),
                     original.convertToFormat(QImage::Format_Alpha8));
        }
    }

    void programsWithoutAnIcon_data()
    {
        QTest::addColumn<QString>("path");
        QTest::newRow("a program without an icon") << builtFile(KESTRELPACK_ICONLESS_EXE);
        QTest::newRow("no program")
            << builtFile(KESTRELPACK_TEST_DATA) + "/archiver/7zr-26.02-linux.txt";
        QTest::newRow("a missing file") << "C:/missing/a.exe";
        QTest::newRow("a folder") << "C:/";
    }
    void programsWithoutAnIcon()
    {
        QFETCH(QString, path);
        const Extraction extraction = extract(path);
        QVERIFY(extraction.image.isNull());
        QCOMPARE(extraction.lines, QStringList{"警告：无法从EXE提取图标"});
    }

    void aMonochromeIconHasNoColours()
    {
        const QTemporaryDir dir;
        const Extraction extraction = extract(programWith(dir, blackIcon(32, 32, 1)));
        QVERIFY(extraction.image.isNull());
        QCOMPARE(extraction.lines, QStringList{"错误：无法获取图标信息"});
    }

    // The shell makes it a square.
    void anIconThatIsNoSquare()
    {
        const QTemporaryDir dir;
        const QString program = programWith(dir, blackIcon(48, 32, 32));
        const QSize size = iconSource().extractIcon(program).image.size();
        QVERIFY(size == QSize(16, 16) || size == QSize(32, 32));
        const Extraction extraction = extract(program);
        QCOMPARE(extraction.image.size(), QSize(256, 256));
        QCOMPARE(extraction.image.pixel(128, 128), qRgba(0, 0, 0, 255));
        QCOMPARE(extraction.lines.size(), 1);
        QVERIFY(extraction.lines[0].startsWith("成功提取图标，大小: "));
    }

    void noHandleStays_data()
    {
        QTest::addColumn<QByteArray>("icon");
        QTest::newRow("an icon in colours") << petest::makeIcon({16, 32, 48, 256});
        QTest::newRow("a monochrome icon") << blackIcon(32, 32, 1);
    }
    void noHandleStays()
    {
        QFETCH(QByteArray, icon);
        const QTemporaryDir dir;
        const QString program = programWith(dir, icon);
        for (int i = 0; i < 20; ++i) { // first lets the system create the handles that it keeps
            iconSource().extractIcon(program);
            countHandles();
        }
        const HandleCount before = countHandles();
        for (int i = 0; i < 500; ++i) {
            iconSource().extractIcon(program);
        }
        const HandleCount after = countHandles();
        QCOMPARE(after.gdi, before.gdi);
        QCOMPARE(after.user, before.user);
        QCOMPARE(after.nextGdi, before.nextGdi);
        // Wine has one table of user objects for all processes, so a few indexes may belong to
        // others.
        QVERIFY2(after.nextUser < before.nextUser + 100,
                 qPrintable(QStringLiteral("%1, %2").arg(before.nextUser).arg(after.nextUser)));
    }
};

QTEST_GUILESS_MAIN(TestIconPixelsWin)
#include "tst_iconpixels_win.moc"
