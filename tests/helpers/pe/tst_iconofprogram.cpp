// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/pe/iconofprogram.h"

#include "helpers/pe/icongroups.h"
#include "helpers/pe/programedit.h"
#include "tests/helpers/pe/nativepathof.h"
#include "tests/helpers/pe/petest.h"
#include "tests/support/testfiles.h"

#include <QTemporaryDir>
#include <QTest>

Q_DECLARE_METATYPE(pe::ProgramEdit)

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

    static QByteArray groupOf(const QString &path)
    {
        const auto icon = pe::iconGroupOfProgram(nativePathOf(path));
        if (icon.hasError() || !icon.value()) {
            return "none";
        }
        return QByteArray(reinterpret_cast<const char *>(icon.value()->data()),
                          static_cast<qsizetype>(icon.value()->size()));
    }

    // Puts the icon into the program as its group "A".
    static bool setIcon(const QString &path, const QByteArray &icon)
    {
        const auto images = pe::parseIcoFile({reinterpret_cast<const std::uint8_t *>(icon.data()),
                                              static_cast<std::size_t>(icon.size())});
        const pe::NativePath native = nativePathOf(path);
        return !images.hasError()
            && !pe::editResources(native, native,
                                  [&](pe::ResourceTree &tree, const pe::File &file,
                                      const pe::PeHeaders &headers) {
                                      return pe::Result<bool>(!pe::setIconGroup(tree, file, headers,
                                                                                {u"A", 0},
                                                                                images.value())
                                                                   .hasError());
                                  })
                    .hasError();
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
        QVERIFY(setIcon(path, petest::makeIcon(sizes)));
        QCOMPARE(imageOfIcon(path), petest::makeImage(largest));
    }

    void theWholeGroupComesOut()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath("a.exe");
        QVERIFY(writeFile(path, petest::makeProgram({.icons = false})));
        const QByteArray icon = petest::makeIcon({48, 256, 16, 32});
        QVERIFY(setIcon(path, icon));
        QCOMPARE(groupOf(path), icon); // the images have the bytes that they have in the program
    }

    // The made program has groups 1 and "OTHER"; names come before ids.
    void theWholeGroupIsTheFirstOne()
    {
        QTemporaryDir dir;
        QVERIFY(writeFile(dir.filePath("a.exe"), petest::makeProgram({})));
        QCOMPARE(groupOf(dir.filePath("a.exe")), petest::makeIcon({32}));
    }

    void aGroupThatIsNotWholeGivesNothing_data()
    {
        QTest::addColumn<pe::ProgramEdit>("edit");
        const pe::ResourceKey images{std::nullopt, pe::iconType};
        const pe::ResourceKey groups{std::nullopt, pe::groupIconType};
        const auto row = [](const char *title, const pe::ResourceEdit &resource) {
            QTest::newRow(title) << pe::ProgramEdit{.resources = {resource}};
        };
        row("an image is missing", {images, {std::nullopt, 2}, 0, {}});
        row("an image is no image", {images, {std::nullopt, 2}, 0, pe::Bytes(100, 0x55)});
        row("an image is empty", {images, {std::nullopt, 2}, 0, pe::Bytes()});
        pe::Bytes large(pe::maxIcoFileSize, 0);
        large[0] = 40; // the size of a bitmap's header
        large[4] = large[8] = 32;
        row("an image is too large", {images, {std::nullopt, 2}, 0, large});
        row("the group has no images", {groups, {u"A", 0}, 0, pe::Bytes{0, 0, 1, 0, 0, 0}});
        row("the group is cut off",
            {groups, {u"A", 0}, 0, pe::Bytes{0, 0, 1,  0, 2, 0, 16, 16, 0, 0,
                                             1, 0, 32, 0, 0, 0, 0,  0,  1, 0}});
        row("the group is empty", {groups, {u"A", 0}, 0, pe::Bytes()});
    }
    void aGroupThatIsNotWholeGivesNothing()
    {
        QFETCH(const pe::ProgramEdit, edit);
        QTemporaryDir dir;
        const QString path = dir.filePath("a.exe");
        QVERIFY(writeFile(path, petest::makeProgram({.icons = false})));
        QVERIFY(setIcon(path, petest::makeIcon({16, 32, 48})));
        QVERIFY(groupOf(path) != "none");
        const pe::NativePath native = nativePathOf(path);
        QVERIFY(!pe::editProgram(native, native, edit).hasError());
        QCOMPARE(groupOf(path), "none");
    }

    // In a hostile program a thousand images can be the same long range of bytes.
    void manyImagesOfTheSameBytesGiveNothing()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath("a.exe");
        QVERIFY(writeFile(path, petest::makeProgram({.icons = false})));
        QVERIFY(setIcon(path, petest::makeIcon({128})));
        pe::Bytes group(6 + 14 * pe::maxIconImages, 0);
        group[2] = 1;
        pe::write16(group, 4, pe::maxIconImages);
        for (std::size_t i = 0; i < pe::maxIconImages; ++i) {
            group[6 + 14 * i + 12] = 1;
        }
        const pe::NativePath native = nativePathOf(path);
        const pe::ProgramEdit edit{
            .resources = {{{std::nullopt, pe::groupIconType}, {u"A", 0}, 0, group}}};
        QVERIFY(!pe::editProgram(native, native, edit).hasError());
        QCOMPARE(groupOf(path), "none");
        QCOMPARE(imageOfIcon(path), petest::makeImage(128));
    }

    void programsWithoutAnIcon()
    {
        petest::Recipe recipe;
        recipe.icons = false;
        QTemporaryDir dir;
        QVERIFY(writeFile(dir.filePath("a.exe"), petest::makeProgram(recipe)));
        const auto icon = pe::iconOfProgram(nativePathOf(dir.filePath("a.exe")));
        QVERIFY(!icon.hasError() && !icon.value());
        const auto group = pe::iconGroupOfProgram(nativePathOf(dir.filePath("a.exe")));
        QVERIFY(!group.hasError() && !group.value());
    }

    void whatIsNoProgramIsAnError()
    {
        QTemporaryDir dir;
        QVERIFY(writeFile(dir.filePath("a.exe"), "no program"));
        QVERIFY(pe::iconOfProgram(nativePathOf(dir.filePath("a.exe"))).hasError());
        QVERIFY(pe::iconOfProgram(nativePathOf(dir.filePath("b.exe"))).hasError());
        QVERIFY(pe::iconGroupOfProgram(nativePathOf(dir.filePath("a.exe"))).hasError());
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
            const auto group = pe::iconGroupOfProgram(nativePathOf(path));
            answers += group.hasError() || !group.value() || group.value()->size() >= 22 ? 1 : 0;
        }
        QCOMPARE(answers, 3000);
    }
};

QTEST_APPLESS_MAIN(TestIconOfProgram)
#include "tst_iconofprogram.moc"
