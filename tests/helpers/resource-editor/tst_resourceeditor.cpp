// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/helpers/resource-editor/editorrun.h"

#include <QDir>
#include <QTest>
#include <QtEndian>

Q_DECLARE_METATYPE(petest::Recipe)

// Edits made-up programs of many shapes. The test's own reader reads the results.
class TestResourceEditor : public QObject
{
    Q_OBJECT

private:
    static void shapes()
    {
        QTest::addColumn<petest::Recipe>("recipe");
        using petest::Recipe;
        QTest::newRow("64 bits") << Recipe{};
        QTest::newRow("32 bits") << Recipe{.pe32Plus = false};
        QTest::newRow("with appended data") << Recipe{.overlay = 100001};
        QTest::newRow("without resources")
            << Recipe{.resources = false, .icons = false, .overlay = 99};
        QTest::newRow("without icons") << Recipe{.icons = false, .overlay = 777};
        QTest::newRow("relocations behind the resources")
            << Recipe{.relocBehind = true, .overlay = 5000};
        QTest::newRow("another section behind the resources")
            << Recipe{.foreignBehind = true, .overlay = 5000};
        QTest::newRow("32 bits, relocations behind")
            << Recipe{.pe32Plus = false, .relocBehind = true, .overlay = 64};
        QTest::newRow("no checksum") << Recipe{.checkSum = false, .overlay = 5000};
        QTest::newRow("a symbol table behind the sections") << Recipe{.symbols = true};
        QTest::newRow("debug data behind the sections")
            << Recipe{.debugDirectory = true, .overlay = 100};
        QTest::newRow("a certificate") << Recipe{.certificate = true, .overlay = 4096};
        QTest::newRow("room left in the resource section")
            << Recipe{.slack = 300000, .overlay = 5000};
    }

    // The debug directory begins 64 bytes after the start of the code. Its last field is the file
    // offset of its data.
    static void moveDebugData(QByteArray &code, qint64 distance)
    {
        char *pointer = code.data() + 64 + 24;
        qToLittleEndian(qFromLittleEndian<quint32>(pointer) + static_cast<quint32>(distance),
                        pointer);
    }

    static void compareWithBefore(const petest::Recipe &recipe, const QByteArray &before,
                                  const QByteArray &after)
    {
        const petest::PeFacts facts = petest::lookAt(after);
        QCOMPARE(facts.fault, QString());
        QCOMPARE(otherResources(after), otherResources(before));
        const petest::PeFacts old = petest::lookAt(before);
        QCOMPARE(old.checkSum != 0, recipe.checkSum);
        QCOMPARE(facts.checkSum, after == before ? old.checkSum : 0U);
        QCOMPARE(after.mid(facts.imageEnd), before.mid(old.imageEnd));
        // Each section keeps its place in memory. All sections except the resources keep their
        // bytes.
        for (const petest::SectionRow &row : old.sections) {
            for (const petest::SectionRow &now : facts.sections) {
                if (now.name == row.name && !row.name.startsWith(".rsrc")
                    && !row.name.startsWith(".reloc")) {
                    QCOMPARE(now.virtualAddress, row.virtualAddress);
                    QByteArray expected = before.mid(row.rawPointer, row.rawSize);
                    if (recipe.debugDirectory && row.name == ".text") {
                        moveDebugData(expected, facts.imageEnd - old.imageEnd);
                    }
                    QCOMPARE(after.mid(now.rawPointer, now.rawSize), expected);
                }
            }
        }
    }

private slots:
    void deleting_data() { shapes(); }
    void deleting()
    {
        QFETCH(petest::Recipe, recipe);
        const QByteArray before = petest::makeProgram(recipe);
        QCOMPARE(petest::lookAt(before).fault, QString());
        const EditorFiles files(before);
        const EditorRun result = files.remove();
        QVERIFY2(result.status == 0, result.errors.constData());
        const QByteArray after = files.content();
        compareWithBefore(recipe, before, after);
        QCOMPARE(iconGroups(after), QStringList());
        QCOMPARE(after.size(), before.size()); // no bytes had to move
        if (!recipe.icons) {
            QCOMPARE(after, before);
        }
    }

    void adding_data() { shapes(); }
    void adding()
    {
        QFETCH(petest::Recipe, recipe);
        const QByteArray before = petest::makeProgram(recipe);
        const EditorFiles files(before);
        const EditorRun result = files.add();
        QVERIFY2(result.status == 0, result.errors.constData());
        const QByteArray after = files.content();
        compareWithBefore(recipe, before, after);
        QVERIFY(iconGroups(after).contains("14/\"MAINICON\"/0"));
        QCOMPARE(iconGroups(after).size(), iconGroups(before).size() + 1);
        QVERIFY(files.dir.isValid());
        QCOMPARE(QDir(files.dir.path())
                     .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot)
                     .size(),
                 2);
    }

    // Code follows the only entry and must not change. Most of it would look like file offsets.
    void aDebugDirectoryOfAWrongSizeMovesNothingElse_data()
    {
        QTest::addColumn<int>("size");
        QTest::addColumn<bool>("firstEntryMoves");
        QTest::newRow("right") << 28 << true;
        QTest::newRow("no whole number of entries") << 5 * 28 + 1 << false;
        QTest::newRow("shorter than an entry") << 27 << false;
        QTest::newRow("it leaves the section's memory") << 30 * 28 << false;
        QTest::newRow("it leaves the section's bytes") << 40 * 28 << false;
        QTest::newRow("it leaves the file") << 64 * 1024 * 28 << false;
        QTest::newRow("the data of most entries lie outside of the file") << 20 * 28 << true;
    }
    void aDebugDirectoryOfAWrongSizeMovesNothingElse()
    {
        QFETCH(int, size);
        QFETCH(bool, firstEntryMoves);
        const QByteArray before
            = petest::makeProgram({.debugDirectory = true, .debugSize = size, .overlay = 100});
        const EditorFiles files(before);
        QCOMPARE(files.add().status, 0);
        const QByteArray after = files.content();
        const petest::PeFacts old = petest::lookAt(before);
        const petest::SectionRow code = old.sections.constFirst();
        QCOMPARE(code.name, ".text");
        QByteArray expected = before.mid(code.rawPointer, code.rawSize);
        if (firstEntryMoves) {
            moveDebugData(expected, petest::lookAt(after).imageEnd - old.imageEnd);
        }
        QVERIFY(after.size() > before.size()); // some bytes did move
        QCOMPARE(after.mid(code.rawPointer, code.rawSize), expected);
    }

    // Edits as the engine does, then the same again, then with a larger icon.
    void deletingAndAddingAgainAndAgain_data() { shapes(); }
    void deletingAndAddingAgainAndAgain()
    {
        QFETCH(petest::Recipe, recipe);
        const QByteArray before = petest::makeProgram(recipe);
        const EditorFiles files(before);
        QByteArray second;
        for (int round = 0; round < 3; ++round) {
            QCOMPARE(files.remove().status, 0);
            QCOMPARE(files.add().status, 0);
            const QByteArray after = files.content();
            compareWithBefore(recipe, before, after);
            QCOMPARE(iconGroups(after), QStringList("14/\"MAINICON\"/0"));
            if (round == 1) {
                second = after;
            }
        }
        // The same icon again needs no more room.
        QCOMPARE(files.content().size(), second.size());
        QVERIFY(writeFile(files.icon(), petest::makeIcon({16, 24, 32, 48, 64, 128, 256})));
        QCOMPARE(files.add().status, 0);
        compareWithBefore(recipe, before, files.content());
        QCOMPARE(iconGroups(files.content()), QStringList("14/\"MAINICON\"/0"));
    }

    void imagesAreThoseOfTheIconFile()
    {
        const EditorFiles files(petest::makeProgram({.icons = false}), {16, 48, 256});
        QCOMPARE(files.add().status, 0);
        const petest::Resources resources = petest::lookAt(files.content()).resources;
        QList<QByteArray> images;
        for (auto it = resources.begin(); it != resources.end(); ++it) {
            if (it.key().startsWith("3/")) {
                images << it->content;
            }
        }
        QCOMPARE(images.size(), 3);
        for (const int size : {16, 48, 256}) {
            QVERIFY(images.contains(petest::makeImage(size)));
        }
    }

    void imagesThatNoGroupRefersToAreKept()
    {
        const QByteArray before = petest::makeProgram({});
        const EditorFiles files(before);
        QCOMPARE(files.remove().status, 0);
        QStringList left = petest::lookAt(files.content()).resources.keys();
        left.removeIf([](const QString &key) { return !key.startsWith("3/"); });
        QCOMPARE(left.size(), 1);
    }

    // Older Windows functions accept paths of up to 259 units only.
    void aLongPath()
    {
        EditorFiles files(petest::makeProgram({}));
        QString folder = files.dir.path();
        for (int i = 0; i < 6; ++i) {
            folder += u'/' + QString(60, QChar('a' + i));
        }
        QVERIFY(QDir().mkpath(folder));
        const QString program = folder + "/长.exe";
        const QString icon = folder + "/a.ico";
        QVERIFY(program.size() > 259);
        QVERIFY(QFile::copy(files.program(), program) && QFile::copy(files.icon(), icon));
        QCOMPARE(startEditor(deleteArguments(program)).status, 0);
        QCOMPARE(iconGroups(readFile(program)), QStringList());
        const EditorRun run = startEditor(addArguments(program, icon));
        QVERIFY2(run.status == 0, run.errors.constData());
        QCOMPARE(iconGroups(readFile(program)), QStringList("14/\"MAINICON\"/0"));
        QCOMPARE(QDir(folder).entryList(QDir::AllEntries | QDir::NoDotAndDotDot).size(), 2);
    }

    void anEditThatFitsIntoTheSectionMovesNothing()
    {
        const EditorFiles files(petest::makeProgram({.slack = 300000, .overlay = 5000}));
        const QByteArray before = files.content();
        QCOMPARE(files.remove().status, 0);
        QCOMPARE(files.add().status, 0);
        QCOMPARE(files.content().size(), before.size());
        QCOMPARE(petest::lookAt(files.content()).imageEnd, petest::lookAt(before).imageEnd);
    }
};

QTEST_GUILESS_MAIN(TestResourceEditor)
#include "tst_resourceeditor.moc"
