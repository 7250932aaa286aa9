// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/pe/iconofprogram.h"

#include "helpers/pe/icongroups.h"
#include "helpers/pe/resourceedit.h"
#include "tests/helpers/pe/nativepathof.h"
#include "tests/helpers/pe/petest.h"
#include "tests/support/testfiles.h"

#include <QTemporaryDir>
#include <QTest>

class TestIconOfProgram : public QObject
{
    Q_OBJECT

private:
    static QByteArray imageOfIcon(const QString &path)
    {
        const auto icon = pe::iconOfProgram(nativePathOf(path));
        if (icon.hasError() || !icon.value()) {
            return "none";
        }
        const pe::Bytes &bytes = *icon.value();
        return QByteArray(reinterpret_cast<const char *>(bytes.data()),
                          static_cast<qsizetype>(bytes.size()))
            .mid(22);
    }

private slots:
    void anIconFileWithOneImageComesOut_data()
    {
        QTest::addColumn<bool>("pe32Plus");
        QTest::newRow("32 bits") << false;
        QTest::newRow("64 bits") << true;
    }
    void anIconFileWithOneImageComesOut()
    {
        QFETCH(bool, pe32Plus);
        petest::Recipe recipe;
        recipe.pe32Plus = pe32Plus;
        QTemporaryDir dir;
        const QString path = dir.filePath("程序 a.exe");
        QVERIFY(writeFile(path, petest::makeProgram(recipe)));
        const auto icon = pe::iconOfProgram(nativePathOf(path));
        QVERIFY(!icon.hasError() && icon.value());
        const pe::Bytes &bytes = *icon.value();
        QVERIFY(bytes.size() > 22);
        QCOMPARE(pe::read16(bytes, 2), 1); // an icon
        QCOMPARE(pe::read16(bytes, 4), 1); // of one image
        QCOMPARE(pe::read32(bytes, 18), 22U);
        QCOMPARE(pe::read32(bytes, 14), bytes.size() - 22);
    }

    // Names come before ids: the first group is "OTHER", which has one image, not 1.
    void theFirstGroupCounts()
    {
        QTemporaryDir dir;
        QVERIFY(writeFile(dir.filePath("a.exe"), petest::makeProgram({})));
        QCOMPARE(imageOfIcon(dir.filePath("a.exe")), petest::makeImage(32));
    }

    void theLargestImageOfTheGroupCounts_data()
    {
        QTest::addColumn<QList<int>>("sizes");
        QTest::addColumn<int>("largest");
        QTest::newRow("it is the first") << QList<int>{48, 32, 16} << 48;
        QTest::newRow("it is in the middle") << QList<int>{16, 64, 48} << 64;
        QTest::newRow("it is a PNG, whose entry says 0") << QList<int>{128, 16, 256} << 256;
    }
    void theLargestImageOfTheGroupCounts()
    {
        QFETCH(QList<int>, sizes);
        QFETCH(int, largest);
        QTemporaryDir dir;
        const QString path = dir.filePath("a.exe");
        QVERIFY(writeFile(path, petest::makeProgram({.icons = false})));
        const QByteArray icon = petest::makeIcon(sizes);
        const auto images = pe::parseIcoFile({reinterpret_cast<const std::uint8_t *>(icon.data()),
                                              static_cast<std::size_t>(icon.size())});
        QVERIFY(!images.hasError());
        const pe::NativePath native = nativePathOf(path);
        const auto outcome = pe::editResources(
            native, native,
            [&](pe::ResourceTree &tree, const pe::File &file, const pe::PeHeaders &headers) {
                return pe::Result<bool>(
                    !pe::setIconGroup(tree, file, headers, {u"A", 0}, images.value()).hasError());
            });
        QVERIFY(!outcome.hasError());
        QCOMPARE(imageOfIcon(path), petest::makeImage(largest));
    }

    void programsWithoutAnIcon()
    {
        petest::Recipe recipe;
        recipe.icons = false;
        QTemporaryDir dir;
        QVERIFY(writeFile(dir.filePath("a.exe"), petest::makeProgram(recipe)));
        const auto icon = pe::iconOfProgram(nativePathOf(dir.filePath("a.exe")));
        QVERIFY(!icon.hasError() && !icon.value());
    }

    void whatIsNoProgramIsAnError()
    {
        QTemporaryDir dir;
        QVERIFY(writeFile(dir.filePath("a.exe"), "no program"));
        QVERIFY(pe::iconOfProgram(nativePathOf(dir.filePath("a.exe"))).hasError());
        QVERIFY(pe::iconOfProgram(nativePathOf(dir.filePath("b.exe"))).hasError());
    }

    // The reader returns an icon, nothing or an error for any damaged program.
    void aDamagedProgramIsNoDanger()
    {
        const QByteArray program = petest::makeProgram({});
        QTemporaryDir dir;
        const QString path = dir.filePath("a.exe");
        int answers = 0;
        for (int i = 0; i < 1500; ++i) {
            QByteArray damaged = program;
            for (int j = 0; j < 1 + i % 4; ++j) {
                // Not random: every run damages the same places.
                const quint32 random = static_cast<quint32>(i * 4 + j) * 2654435761U;
                damaged[random % static_cast<quint32>(damaged.size())]
                    = static_cast<char>(random >> 24);
            }
            QVERIFY(writeFile(path, damaged));
            const auto icon = pe::iconOfProgram(nativePathOf(path));
            answers += icon.hasError() || !icon.value() || icon.value()->size() >= 22 ? 1 : 0;
        }
        QCOMPARE(answers, 1500);
    }
};

QTEST_APPLESS_MAIN(TestIconOfProgram)
#include "tst_iconofprogram.moc"
