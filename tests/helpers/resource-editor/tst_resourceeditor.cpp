// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/helpers/resource-editor/editorrun.h"

#include <QDateTime>
#include <QDir>
#include <QTest>
#include <QtEndian>

#include <algorithm>

Q_DECLARE_METATYPE(petest::Recipe)

// The editor on made-up programs of every shape, read back by a reader of the test's own.
class TestResourceEditor : public QObject
{
    Q_OBJECT

private:
    struct Files
    {
        explicit Files(const QByteArray &program, const QList<int> &iconSizes = {16, 32, 256})
        {
            if (!writeFile(this->program(), program)
                || !writeFile(icon(), petest::makeIcon(iconSizes))) {
                qFatal("the files could not be made");
            }
        }
        QString program() const { return dir.filePath("程序 with blanks.exe"); }
        QString icon() const { return dir.filePath("icon.ico"); }
        QByteArray content() const { return readFile(program()); }
        EditorResult remove() const { return runEditor(deleteArguments(program())); }
        EditorResult add() const { return runEditor(addArguments(program(), icon())); }

        QTemporaryDir dir;
    };

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

    // The debug directory lies 64 bytes into the code; its last field is where its data lie in the
    // file.
    static void moveDebugData(QByteArray &code, qint64 distance)
    {
        char *pointer = code.data() + 64 + 24;
        qToLittleEndian(qFromLittleEndian<quint32>(pointer) + static_cast<quint32>(distance),
                        pointer);
    }

    static void addDamagedTrees(const QByteArray &program, const QByteArray &icon)
    {
        const auto rows = petest::lookAt(program).sections;
        const auto section = std::find_if(rows.begin(), rows.end(), [](const auto &row) {
            return row.name.startsWith(".rsrc");
        });
        const qsizetype root = section->rawPointer;
        const auto numberAt = [&program](qsizetype offset) {
            return qFromLittleEndian<quint32>(program.constData() + offset);
        };
        const auto patched = [&program](qsizetype offset, quint32 number) {
            QByteArray damaged = program;
            qToLittleEndian(number, damaged.data() + offset);
            return damaged;
        };
        constexpr quint32 table = 0x80000000U;
        // The way down from the root's first entry to its first data.
        const qsizetype names = root + (numberAt(root + 20) & ~table);
        const qsizetype languages = root + (numberAt(names + 20) & ~table);
        QTest::newRow("a table that contains itself") << patched(root + 20, table) << icon << 4;
        QTest::newRow("a loop over two tables") << patched(names + 20, table) << icon << 4;
        QTest::newRow("a table behind the section")
            << patched(root + 20, table | section->rawSize) << icon << 4;
        QTest::newRow("a table far away") << patched(root + 20, table | 0x7ffffff0U) << icon << 4;
        QTest::newRow("data entry behind the section")
            << patched(languages + 20, section->rawSize - 8) << icon << 4;
        QTest::newRow("a name behind the section")
            << patched(root + 16, table | 0x7ffffff0U) << icon << 4;
        QTest::newRow("tables below the languages")
            << patched(languages + 20, numberAt(languages + 20) | table) << icon << 4;
        QTest::newRow("more entries than the section holds")
            << patched(root + 12, 0xffffffffU) << icon << 4;
        const qsizetype directories = program.indexOf(QByteArray("PE\0\0", 4)) + 24 + 112;
        QTest::newRow("resources outside the sections")
            << patched(directories + 2 * 8, 0x7000000U) << icon << 4;
    }

    static void compareWithBefore(const petest::Recipe &recipe, const QByteArray &before,
                                  const QByteArray &after)
    {
        const petest::PeFacts facts = petest::lookAt(after);
        QCOMPARE(facts.fault, QString());
        QCOMPARE(otherResources(after), otherResources(before));
        QCOMPARE(facts.checkSum, recipe.checkSum ? petest::naiveCheckSum(after) : 0U);
        const petest::PeFacts old = petest::lookAt(before);
        QCOMPARE(after.mid(facts.imageEnd), before.mid(old.imageEnd));
        // Each section keeps its place in memory and, but for the resources', its bytes.
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
        const Files files(before);
        const EditorResult result = files.remove();
        QVERIFY2(result.status == 0, result.errors.constData());
        const QByteArray after = files.content();
        compareWithBefore(recipe, before, after);
        QCOMPARE(iconGroups(after), QStringList());
        QCOMPARE(after.size(), before.size()); // nothing had to move
        if (!recipe.icons) {
            QCOMPARE(after, before);
        }
    }

    void adding_data() { shapes(); }
    void adding()
    {
        QFETCH(petest::Recipe, recipe);
        const QByteArray before = petest::makeProgram(recipe);
        const Files files(before);
        const EditorResult result = files.add();
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

    // As the engine does, and then once more, and with a larger icon.
    void deletingAndAddingAgainAndAgain_data() { shapes(); }
    void deletingAndAddingAgainAndAgain()
    {
        QFETCH(petest::Recipe, recipe);
        const QByteArray before = petest::makeProgram(recipe);
        const Files files(before);
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
        const Files files(petest::makeProgram({.icons = false}), {16, 48, 256});
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
        const Files files(before);
        QCOMPARE(files.remove().status, 0);
        QStringList left = petest::lookAt(files.content()).resources.keys();
        left.removeIf([](const QString &key) { return !key.startsWith("3/"); });
        QCOMPARE(left.size(), 1);
    }

    void anEditThatNeedsNoRoomWritesTheSameFile()
    {
        const Files files(petest::makeProgram({.slack = 300000, .overlay = 5000}));
        const QByteArray before = files.content();
        QFile handle(files.program());
        QVERIFY(handle.open(QIODevice::ReadOnly)); // the file itself, not its name
        QCOMPARE(files.remove().status, 0);
        QCOMPARE(files.add().status, 0);
        QCOMPARE(handle.readAll(), files.content());
        QCOMPARE(files.content().size(), before.size());
        QCOMPARE(petest::lookAt(files.content()).imageEnd, petest::lookAt(before).imageEnd);
    }

    void refusals_data()
    {
        QTest::addColumn<QByteArray>("program");
        QTest::addColumn<QByteArray>("icon");
        QTest::addColumn<int>("status");
        const QByteArray program = petest::makeProgram({.overlay = 1000});
        const QByteArray icon = petest::makeIcon({16, 32});
        const qsizetype peOffset = program.indexOf(QByteArray("PE\0\0", 4));
        const auto patched = [&program](qsizetype offset, const QByteArray &bytes) {
            return QByteArray(program).replace(offset, bytes.size(), bytes);
        };
        const qsizetype sectionTable = peOffset + 24 + 240;
        QTest::newRow("an empty file") << QByteArray() << icon << 3;
        QTest::newRow("text") << QByteArray(2000, 'x') << icon << 3;
        QTest::newRow("MZ and no more") << QByteArray("MZ") << icon << 3;
        QTest::newRow("PE header outside the file")
            << patched(0x3c, QByteArray("\xff\xff\xff\x7f", 4)) << icon << 3;
        QTest::newRow("neither PE32 nor PE32+")
            << patched(peOffset + 24, QByteArray("\x07\x01", 2)) << icon << 3;
        QTest::newRow("a section outside the file")
            << patched(sectionTable + 20, QByteArray("\xf0\xff\xff\x7f", 4)) << icon << 4;
        QTest::newRow("more sections than the headers hold")
            << patched(peOffset + 6, QByteArray("\xff\xff", 2)) << icon << 4;
        addDamagedTrees(program, icon);
        QTest::newRow("an icon whose images together are longer than it")
            << program << QByteArray(icon).replace(6 + 8, 8, icon.mid(6 + 16 + 8, 8)) << 5;
        QTest::newRow("an icon that is empty") << program << QByteArray() << 5;
        QTest::newRow("an icon that is cut off") << program << icon.chopped(10) << 5;
        QTest::newRow("an icon that is a cursor")
            << program << QByteArray(icon).replace(2, 1, "\2") << 5;
    }
    void refusals()
    {
        QFETCH(QByteArray, program);
        QFETCH(QByteArray, icon);
        const Files files(program);
        QVERIFY(writeFile(files.icon(), icon));
        const QDateTime time = QFileInfo(files.program()).lastModified();
        const EditorResult result = files.add();
        QTEST(result.status, "status");
        QVERIFY2(result.errors.startsWith("resource-editor: ") && result.errors.count('\n') == 1
                     && result.errors.endsWith('\n'),
                 result.errors.constData());
        QCOMPARE(files.content(), program);
        QCOMPARE(QFileInfo(files.program()).lastModified(), time);
    }

    void wrongArguments_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QStringList noOpen = deleteArguments("a.exe").mid(2);
        QTest::newRow("none") << QStringList();
        QTest::newRow("no -open") << noOpen;
        QTest::newRow("another action")
            << deleteArguments("a.exe").replaceInStrings("delete", "compile");
        QTest::newRow("another mask")
            << deleteArguments("a.exe").replaceInStrings("ICONGROUP,", "DIALOG,");
        QTest::newRow("a switch without its value") << deleteArguments("a.exe").mid(0, 9);
        QStringList longName = addArguments("a.exe", "a.ico");
        longName[9] = "ICONGROUP," + QString(70000, 'A') + ",";
        QTest::newRow("a name that no program can hold") << longName;
        QTest::newRow("adding without an icon")
            << deleteArguments("a.exe").replaceInStrings("delete", "addoverwrite");
    }
    void wrongArguments()
    {
        QFETCH(QStringList, arguments);
        if (onWindows && arguments.join(' ').size() > 32767) {
            QSKIP("longer than a command line may be here");
        }
        const EditorResult result = runEditor(arguments);
        QCOMPARE(result.status, 2);
        QCOMPARE(result.errors.count('\n'), 1);
    }

    void aMaskThatIsNoText()
    {
        if (onWindows) {
            QSKIP("arguments are text here");
        }
        const Files files(petest::makeProgram({}));
        const QByteArray before = files.content();
        QStringList arguments = addArguments(files.program(), files.icon());
        arguments.remove(8, 4);
        arguments.prepend(KESTRELPACK_RESOURCE_EDITOR);
        QProcess shell;
        shell.start("/bin/sh",
                    QStringList{"-c",
                                "exec \"$0\" \"$@\" -mask "
                                "\"$(printf 'ICONGROUP,\\377,')\""}
                        + arguments);
        QVERIFY(shell.waitForFinished());
        QCOMPARE(shell.exitCode(), 2);
        QCOMPARE(shell.readAllStandardError().count('\n'), 1);
        QCOMPARE(files.content(), before);
    }

    // Cut off anywhere, a program is edited or refused, and a refusal leaves it as it was.
    void programsThatAreCutOff()
    {
        const QByteArray program = petest::makeProgram({});
        int refused = 0;
        for (int i = 0; i < 120; ++i) {
            const QByteArray cut = program.left(i < 60 ? i * 16 : i * program.size() / 120);
            const Files files(cut);
            const EditorResult result = files.add();
            QVERIFY2(result.status == 0 || result.status == 3 || result.status == 4,
                     result.errors.constData());
            if (result.status != 0) {
                ++refused;
                QCOMPARE(files.content(), cut);
            }
        }
        QVERIFY2(refused >= 100, qPrintable(QString::number(refused)));
    }

    void programsThatAreDamaged()
    {
        const QByteArray program = petest::makeProgram({.overlay = 100});
        for (quint32 i = 0; i < 300; ++i) {
            QByteArray damaged = program;
            for (quint32 j = 0; j < 1 + i % 3; ++j) {
                const quint32 random = (i * 3 + j + 1) * 2654435761U;
                // Headers and resource tables are where it hurts.
                damaged[random % 2048U] = static_cast<char>(random >> 24);
            }
            const Files files(damaged);
            const EditorResult result = i % 2 == 0 ? files.add() : files.remove();
            QVERIFY2(result.status == 0 || (result.status >= 3 && result.status <= 6),
                     result.errors.constData());
            if (result.status != 0) {
                QCOMPARE(files.content(), damaged);
            } else if (petest::lookAt(damaged).fault.isEmpty()) {
                QCOMPARE(petest::lookAt(files.content()).fault, QString());
            }
        }
    }
};

QTEST_GUILESS_MAIN(TestResourceEditor)
#include "tst_resourceeditor.moc"
