// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/resource-editor/editor.h"

#include "tests/helpers/pe/nativepathof.h"
#include "tests/helpers/resource-editor/editorrun.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QTest>
#include <QtEndian>

#include <algorithm>

// Input that the editor refuses: files that are not programs or icons, damaged files, and other
// arguments. It does not change those files. Nearly all rows call the editor in this process; a few
// start the program.
class TestResourceEditorRefusals : public QObject
{
    Q_OBJECT

private:
    static EditorResult edit(const QStringList &arguments)
    {
        Arguments native;
        for (const QString &argument : arguments) {
            native.push_back(nativePathOf(argument));
        }
        return runEditor(native);
    }
    static EditorResult add(const EditorFiles &files)
    {
        return edit(addArguments(files.program(), files.icon()));
    }
    static EditorResult remove(const EditorFiles &files)
    {
        return edit(deleteArguments(files.program()));
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
        // The path from the root's first entry to its first data.
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

private slots:
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
        const EditorFiles files(program, {16});
        QVERIFY(writeFile(files.icon(), icon));
        const QDateTime time = QFileInfo(files.program()).lastModified();
        const EditorResult result = add(files);
        QTEST(static_cast<int>(result.status), "status");
        QVERIFY(!result.message.empty());
        QVERIFY(result.message.find('\n') == std::string::npos);
        QCOMPARE(files.content(), program);
        QCOMPARE(QFileInfo(files.program()).lastModified(), time);
    }

    void theProgramSaysWhyAndEndsWithTheStatus_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("status");
        QTest::newRow("no arguments") << QStringList() << 2;
        QTest::newRow("not a program") << deleteArguments("icon.ico") << 3;
        QTest::newRow("not an icon") << addArguments("program.exe", "program.exe") << 5;
        QTest::newRow("no such file") << deleteArguments("missing.exe") << 7;
    }
    void theProgramSaysWhyAndEndsWithTheStatus()
    {
        QFETCH(QStringList, arguments);
        QFETCH(int, status);
        const EditorFiles files(petest::makeProgram({}));
        for (QString &argument : arguments) {
            if (argument == "program.exe") {
                argument = files.program();
            } else if (argument.contains('.')) {
                argument = files.dir.filePath(argument);
            }
        }
        const EditorRun run = startEditor(arguments);
        QCOMPARE(run.status, status);
        QVERIFY2(run.errors.startsWith("resource-editor: ") && run.errors.count('\n') == 1
                     && run.errors.endsWith('\n'),
                 run.errors.constData());
    }

    void wrongArguments_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("problem");
        const auto with = [](QStringList arguments, int at, const QString &value) {
            arguments[at] = value;
            return arguments;
        };
        const QStringList toDelete = deleteArguments("a.exe");
        const QStringList toAdd = addArguments("a.exe", "a.ico");
        QTest::newRow("none") << QStringList() << "-open is missing";
        QTest::newRow("no -open") << toDelete.mid(2) << "expected -open instead of -save";
        QTest::newRow("another order") << toDelete.mid(2, 2) + toDelete.mid(0, 2) + toDelete.mid(4)
                                       << "expected -open instead of -save";
        QTest::newRow("the end is missing") << toAdd.mid(0, 10) << "-log is missing";
        QTest::newRow("a switch without its value") << toDelete.mid(0, 9) << "-log needs a value";
        QTest::newRow("an empty value") << with(toAdd, 7, "") << "-resource needs a value";
        QTest::newRow("an argument too many")
            << toDelete + QStringList("-silent") << "unexpected argument -silent";
        QTest::newRow("another action")
            << with(toDelete, 5, "compile") << "-action must be delete or addoverwrite";
        QTest::newRow("another type")
            << with(toDelete, 7, "DIALOG,") << "-mask must be ICONGROUP, to delete";
        QTest::newRow("deleting one group")
            << with(toDelete, 7, "ICONGROUP,A,") << "-mask must be ICONGROUP, to delete";
        QTest::newRow("adding without an icon")
            << with(toDelete, 5, "addoverwrite") << "expected -resource instead of -mask";
        const QString badName
            = "-mask must be ICONGROUP,NAME, where NAME has only letters, digits and _";
        for (const char *mask :
             {"ICONGROUP,", "ICONGROUP,,", "ICONGROUP,1,", "ICONGROUP,A B,", "ICONGROUP,A,1033",
              "ICONGROUP,MAINICON", "ICONGROUP,图标,", "DIALOG,MAINICON,"}) {
            QTest::addRow("to add %s", mask) << with(toAdd, 9, mask) << badName;
        }
        QTest::newRow("a name that no program can hold")
            << with(toAdd, 9, "ICONGROUP," + QString(70000, 'A') + ",")
            << "the name in -mask is too long";
    }
    void wrongArguments()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, problem);
        const EditorResult result = edit(arguments);
        QCOMPARE(static_cast<int>(result.status), 2);
        QCOMPARE(QString::fromStdString(result.message), "arguments: " + problem);
    }

    void aLogMustNotBeOneOfTheFiles_data()
    {
        QTest::addColumn<bool>("isIcon");
        QTest::newRow("the program") << false;
        QTest::newRow("the icon") << true;
    }
    void aLogMustNotBeOneOfTheFiles()
    {
        QFETCH(bool, isIcon);
        const EditorFiles files(petest::makeProgram({}));
        const QByteArray before = files.content();
        const QByteArray icon = readFile(files.icon());
        QStringList arguments = addArguments(files.program(), files.icon());
        // A different way to write the path.
        arguments.last() = files.dir.path() + "/./"
            + QFileInfo(isIcon ? files.icon() : files.program()).fileName();
        QCOMPARE(static_cast<int>(edit(arguments).status), 2);
        QCOMPARE(files.content(), before);
        QCOMPARE(readFile(files.icon()), icon);
    }

    void theLogTellsTheOutcome()
    {
        const EditorFiles files(petest::makeProgram({.icons = false}));
        const QString log = files.dir.filePath("editor.log");
        const auto logOf = [&log](QStringList arguments) {
            arguments.last() = log;
            edit(arguments);
            return readFile(log);
        };
        const QByteArray program = QDir::toNativeSeparators(files.program()).toUtf8();
        const auto named = [](QByteArray line) {
            return line.replace('/', '\\');
        };
        QCOMPARE(named(logOf(deleteArguments(files.program()))),
                 named(program) + ": nothing to do\n");
        QCOMPARE(named(logOf(addArguments(files.program(), files.icon()))),
                 named(program) + ": done\n");
        QVERIFY(writeFile(files.icon(), "no icon"));
        QVERIFY(
            logOf(addArguments(files.program(), files.icon())).endsWith(": not an icon file\n"));
    }

    // At any length, a truncated program is either edited, or refused and not changed.
    void programsThatAreCutOff()
    {
        const QByteArray program = petest::makeProgram({});
        int refused = 0;
        for (int i = 0; i < 120; ++i) {
            const QByteArray cut = program.left(i < 60 ? i * 16 : i * program.size() / 120);
            const EditorFiles files(cut, {16});
            const EditorResult result = add(files);
            const int status = static_cast<int>(result.status);
            QVERIFY2(status == 0 || status == 3 || status == 4, result.message.c_str());
            if (status != 0) {
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
                // Damage to headers and resource tables has the most effect.
                damaged[random % 2048U] = static_cast<char>(random >> 24);
            }
            const EditorFiles files(damaged, {16});
            const EditorResult result = i % 2 == 0 ? add(files) : remove(files);
            const int status = static_cast<int>(result.status);
            QVERIFY2(status == 0 || (status >= 3 && status <= 6), result.message.c_str());
            if (status != 0) {
                QCOMPARE(files.content(), damaged);
            } else if (petest::lookAt(damaged).fault.isEmpty()) {
                QCOMPARE(petest::lookAt(files.content()).fault, QString());
            }
        }
    }
};

QTEST_GUILESS_MAIN(TestResourceEditorRefusals)
#include "tst_resourceeditor_refusals.moc"
