// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "preparation/programicon.h"

#include "helpers/pe/icongroups.h"
#include "helpers/pe/resourceedit.h"
#include "icons/iconvalidation.h"
#include "platform/nativepath.h"
#include "tests/helpers/pe/petest.h"
#include "tests/support/builtfile.h"
#include "tests/support/testfiles.h"

#include <QBuffer>
#include <QImageReader>
#include <QTemporaryDir>
#include <QTest>
#include <QtEndian>

namespace {

template <typename Number>
QByteArray little(Number value)
{
    QByteArray bytes(sizeof value, '\0');
    qToLittleEndian(value, bytes.data());
    return bytes;
}

// A bitmap with a palette, as icons of the nineties have it.
QByteArray paletteImage(int side, int bits)
{
    const int rowSize = (side * bits + 31) / 32 * 4;
    const int maskSize = (side + 31) / 32 * 4 * side;
    QByteArray palette;
    for (int color = 0; color < 1 << bits; ++color) {
        palette += little<quint32>(static_cast<quint32>(color) * 0x10305);
    }
    return little(40) + little(side) + little(2 * side) + little<quint16>(1)
        + little(static_cast<quint16>(bits)) + QByteArray(24, '\0') + palette
        + QByteArray(rowSize * side, '\x12') + QByteArray(maskSize, '\0');
}

// Images of these depths, in one icon file.
QByteArray paletteIcon(const QList<int> &depths)
{
    QByteArray directory = little<quint16>(0) + little<quint16>(1)
        + little(static_cast<quint16>(depths.size()));
    QByteArray images;
    for (const int bits : depths) {
        const QByteArray image = paletteImage(32, bits);
        directory += QByteArray("\x20\x20") + static_cast<char>(bits < 8 ? 1 << bits : 0) + '\0'
            + little<quint16>(1) + little(static_cast<quint16>(bits))
            + little(static_cast<quint32>(image.size()))
            + little(static_cast<quint32>(6 + 16 * depths.size() + images.size()));
        images += image;
    }
    return directory + images;
}

bool isAcceptedByTheEngine(const QByteArray &icon)
{
    return isUsableIcon(icon, [](const QString &line) { qInfo().noquote() << line; });
}

// Sizes of all images that Qt can decode.
QList<QSize> imageSizes(QByteArray icon)
{
    QBuffer buffer(&icon);
    QImageReader reader(&buffer, "ICO");
    QList<QSize> sizes;
    for (int i = 0; i < reader.imageCount(); ++i) {
        reader.jumpToImage(i);
        sizes.append(reader.read().size());
    }
    return sizes;
}

} // namespace

class TestProgramIcon : public QObject
{
    Q_OBJECT

private slots:
    void iconsOfPrograms_data();
    void iconsOfPrograms();
    void theWholeIconOfARealProgram_data();
    void theWholeIconOfARealProgram();
    void withoutAnIcon();
    void setsAnIcon();
    void setsNoBrokenIcon();

private:
    QTemporaryDir m_dir;
};

void TestProgramIcon::iconsOfPrograms_data()
{
    QTest::addColumn<QByteArray>("icon");
    QTest::addColumn<int>("count");
    QTest::newRow("32 bits and a PNG") << petest::makeIcon({256, 48, 16}) << 3;
    QTest::newRow("the PNG is the last") << petest::makeIcon({16, 32, 48, 256}) << 4;
    QTest::newRow("2 colours") << paletteIcon({1}) << 1;
    QTest::newRow("16 colours") << paletteIcon({4}) << 1;
    QTest::newRow("256 colours") << paletteIcon({8}) << 1;
    QTest::newRow("2, 16 and 256 colours") << paletteIcon({1, 4, 8}) << 3;
}

void TestProgramIcon::iconsOfPrograms()
{
    QFETCH(const QByteArray, icon);
    const QString path = m_dir.filePath("程序.exe");
    QVERIFY(writeFile(path, petest::makeProgram({.icons = false})));
    const auto images = pe::parseIcoFile({reinterpret_cast<const std::uint8_t *>(icon.data()),
                                          static_cast<std::size_t>(icon.size())});
    QVERIFY(!images.hasError());
    const auto native = toNativePath(path);
    const auto outcome = pe::editResources(
        native, native,
        [&](pe::ResourceTree &tree, const pe::File &file, const pe::PeHeaders &headers) {
            return pe::Result<bool>(
                !pe::setIconGroup(tree, file, headers, {u"MAINICON", 0}, images.value())
                     .hasError());
        });
    QVERIFY(!outcome.hasError());
    const QByteArray found = iconFileOfProgram(path);
    QCOMPARE(found.toHex(), icon.toHex());
    QVERIFY(isAcceptedByTheEngine(found));
    const QList<QSize> sizes = imageSizes(found);
    QTEST(static_cast<int>(sizes.size()), "count");
    for (const QSize &size : sizes) {
        QVERIFY(!size.isEmpty());
    }
}

void TestProgramIcon::theWholeIconOfARealProgram_data()
{
    QTest::addColumn<QString>("program");
    QTest::newRow("the example") << builtFile(KESTRELPACK_HELLO_EXE);
    QTest::newRow("a program with version information") << builtFile(KESTRELPACK_IDENTIFIED);
}

void TestProgramIcon::theWholeIconOfARealProgram()
{
    QFETCH(const QString, program);
    const QByteArray icon = iconFileOfProgram(program);
    QVERIFY(isAcceptedByTheEngine(icon));
    const QList<QSize> expected{{16, 16}, {24, 24}, {32, 32}, {48, 48}, {64, 64}, {256, 256}};
    QCOMPARE(imageSizes(icon), expected);
}

void TestProgramIcon::withoutAnIcon()
{
    const QString path = m_dir.filePath("a.exe");
    QVERIFY(writeFile(path, petest::makeProgram({.icons = false})));
    QCOMPARE(iconFileOfProgram(path), QByteArray());
    QVERIFY(writeFile(path, "no program"));
    QCOMPARE(iconFileOfProgram(path), QByteArray());
    QCOMPARE(iconFileOfProgram(m_dir.filePath("missing.exe")), QByteArray());
}

void TestProgramIcon::setsAnIcon()
{
    const QString path = m_dir.filePath("b.exe");
    QVERIFY(writeFile(path, petest::makeProgram({.icons = false}) + "data after the image"));
    const QByteArray icon = petest::makeIcon({256, 48, 16});
    QVERIFY(!setIconOfProgram(path, icon));
    QCOMPARE(iconFileOfProgram(path), icon);
    QVERIFY(readFile(path).endsWith("data after the image"));
}

void TestProgramIcon::setsNoBrokenIcon()
{
    const QString path = m_dir.filePath("c.exe");
    const QByteArray program = petest::makeProgram({.icons = false});
    QVERIFY(writeFile(path, program));
    const auto problem = setIconOfProgram(path, petest::makeIcon({48}).chopped(1));
    QVERIFY(problem);
    QVERIFY(!problem->values.constFirst().isEmpty());
    QCOMPARE(readFile(path), program);
    QVERIFY(setIconOfProgram(m_dir.filePath("missing.exe"), petest::makeIcon({48})));
}

QTEST_GUILESS_MAIN(TestProgramIcon)

#include "tst_programicon.moc"
