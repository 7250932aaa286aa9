// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/support/builtfile.h"
#include "tests/support/testfiles.h"

#include <QDirIterator>
#include <QIcon>
#include <QImageReader>
#include <QResource>
#include <QTemporaryDir>
#include <QTest>

namespace {

QStringList imageNames()
{
    return {"add_bottom",
            "add_left",
            "add_right",
            "add_top",
            "branch_close",
            "branch_open",
            "calendar_nextmonth",
            "calendar_prevmonth",
            "checkbox_checked",
            "checkbox_checked_disable",
            "checkbox_parcial",
            "checkbox_parcial_disable",
            "checkbox_unchecked",
            "checkbox_unchecked_disable",
            "radiobutton_checked",
            "radiobutton_checked_disable",
            "radiobutton_unchecked",
            "radiobutton_unchecked_disable"};
}

QStringList drawingNames()
{
    return {"logo", "foundation", "foundation-hover", "senior", "senior-hover", "nav",
            "min",  "close"};
}

QStringList expectedPaths()
{
    QStringList paths = {":/icons/logo.ico", ":/resources/7zr.exe", ":/resources/7zS2.sfx",
                         ":/resources/ResourceHacker.exe", ":/resources/config.txt"};
    for (const QString &name : drawingNames())
        paths += ":/icons/" + name + ".svg";
    for (const QString &theme : {QStringLiteral("default"), QStringLiteral("dark")}) {
        paths += ":/qss/" + theme + ".css";
        for (const QString &name : imageNames())
            paths += ":/qss/" + theme + '/' + name + ".png";
    }
    paths.sort();
    return paths;
}

QStringList bundledPaths()
{
    QStringList paths;
    for (const char *folder : {":/icons", ":/qss", ":/resources"}) {
        QDirIterator entry(folder, QDir::Files, QDirIterator::Subdirectories);
        while (entry.hasNext())
            paths += entry.next();
    }
    paths.sort();
    return paths;
}

QColor mostFrequentColor(const QImage &image)
{
    QHash<QRgb, int> counts;
    QRgb winner = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QRgb color = image.pixel(x, y);
            if (qAlpha(color) == 255 && ++counts[color] > counts.value(winner))
                winner = color;
        }
    }
    return QColor(winner);
}

} // namespace

class TestResources : public QObject
{
    Q_OBJECT

private slots:
    void theBundleHoldsExactlyTheListedFiles() { QCOMPARE(bundledPaths(), expectedPaths()); }

    void everyFileHasContent()
    {
        for (const QString &path : expectedPaths())
            QVERIFY2(!contentOf(path).isEmpty(), qPrintable(path));
    }

    void onlySheetsAndProgramIconAreCompressed()
    {
        const QStringList compressed = {":/icons/logo.ico", ":/qss/dark.css", ":/qss/default.css"};
        for (const QString &path : expectedPaths()) {
#ifdef __SANITIZE_ADDRESS__
            // A resource editor that was built with sanitizers has much data that compresses well.
            if (path == ":/resources/ResourceHacker.exe")
                continue;
#endif
            const auto expected = compressed.contains(path) ? QResource::ZlibCompression
                                                            : QResource::NoCompression;
            const QResource resource(path);
            QVERIFY2(resource.compressionAlgorithm() == expected, qPrintable(path));
        }
    }

    void copiedHelperEqualsTheFileItWasMadeOf_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("source");
        QTest::newRow("archiver") << ":/resources/7zr.exe" << builtFile(KESTRELPACK_ARCHIVER);
        QTest::newRow("self-extractor module")
            << ":/resources/7zS2.sfx" << builtFile(KESTRELPACK_MODULE);
        QTest::newRow("resource editor")
            << ":/resources/ResourceHacker.exe" << builtFile(KESTRELPACK_RESOURCE_EDITOR);
    }

    void copiedHelperEqualsTheFileItWasMadeOf()
    {
        QFETCH(QString, path);
        QFETCH(QString, source);
        const QTemporaryDir folder;
        const QString copy = folder.filePath("copy");
        QVERIFY(QFile::copy(path, copy));
        QVERIFY(contentOf(copy) == contentOf(path));
        QVERIFY(!contentOf(source).isEmpty());
        QVERIFY(contentOf(copy) == contentOf(source));
    }

    void imagesHaveTwiceThePixelsTheyAreShownAt()
    {
        for (const QString &theme : {QStringLiteral("default"), QStringLiteral("dark")}) {
            for (const QString &name : imageNames()) {
                const QImage image(":/qss/" + theme + '/' + name + ".png");
                const int shownAt = name.startsWith("calendar")         ? 16
                    : name.contains("box_") || name.contains("button_") ? 13
                                                                        : 12;
                QVERIFY2(image.size() == QSize(2 * shownAt, 2 * shownAt), qPrintable(name));
                QVERIFY2(mostFrequentColor(image).isValid(), qPrintable(name));
                QCOMPARE(qAlpha(image.pixel(0, 0)), 0);
            }
        }
    }

    void themesHaveDifferentImages()
    {
        QVERIFY(QImage(":/qss/default/checkbox_unchecked.png")
                != QImage(":/qss/dark/checkbox_unchecked.png"));
    }

    void drawingsRenderAtEveryScale()
    {
        for (const QString &name : drawingNames()) {
            const QIcon icon(":/icons/" + name + ".svg");
            for (const int side : {16, 24, 36, 48}) {
                const QImage image = icon.pixmap(QSize(side, side), 1.0).toImage();
                QCOMPARE(image.size(), QSize(side, side));
                QVERIFY2(mostFrequentColor(image).alpha() == 255, qPrintable(name));
            }
        }
    }

    void hoverDrawingsDifferInColorOnly()
    {
        const auto color = [](const char *path) {
            return mostFrequentColor(QIcon(path).pixmap(QSize(96, 96), 1.0).toImage()).name();
        };
        for (const QByteArray name : {"foundation", "senior"}) {
            QCOMPARE(color(":/icons/" + name + ".svg"), QString("#34495e"));
            QCOMPARE(color(":/icons/" + name + "-hover.svg"), QString("#00b688"));
            QByteArray plain = contentOf(":/icons/" + name + ".svg");
            QCOMPARE(plain.replace("#34495e", "#00b688"),
                     contentOf(":/icons/" + name + "-hover.svg"));
        }
    }

    void programIconHasTheSizesWindowsShows()
    {
        QImageReader reader(":/icons/logo.ico");
        QList<int> sides;
        for (int index = 0; index < reader.imageCount(); ++index) {
            QVERIFY(reader.jumpToImage(index));
            const QImage image = reader.read();
            QCOMPARE(image.width(), image.height());
            QVERIFY(image.hasAlphaChannel());
            QCOMPARE(qAlpha(image.pixel(0, 0)), 0);
            QCOMPARE(qAlpha(image.pixel(image.width() / 2, image.height() / 2)), 255);
            sides += image.width();
        }
        QCOMPARE(sides, QList<int>({16, 20, 24, 32, 40, 48, 64, 72, 256}));
    }

    void sampleConfigurationIsABlock()
    {
        const QByteArray block = contentOf(":/resources/config.txt");
        QCOMPARE(block.size(), 141);
        QVERIFY(block.startsWith(";!@Install@!UTF-8!\nTitle=\""));
        QVERIFY(block.contains("\nBeginPrompt=\"") && block.contains("\nRunProgram=\""));
        QVERIFY(block.endsWith("\"\n;!@InstallEnd@!\n"));
    }
};

QTEST_MAIN(TestResources)
#include "tst_resources.moc"
