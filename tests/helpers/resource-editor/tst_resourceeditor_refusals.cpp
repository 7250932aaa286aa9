// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/helpers/resource-editor/editorrun.h"

#include <QDateTime>
#include <QFileInfo>
#include <QTest>
#include <QtEndian>

#include <algorithm>

// What the editor does not take: programs and icons that are none, or damaged, and arguments of another kind.
// What it refuses stays as it was.
class TestResourceEditorRefusals : public QObject
{
    Q_OBJECT

private:
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
        const EditorFiles files(program);
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
        const EditorFiles files(petest::makeProgram({}));
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
            const EditorFiles files(cut);
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
            const EditorFiles files(damaged);
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

QTEST_GUILESS_MAIN(TestResourceEditorRefusals)
#include "tst_resourceeditor_refusals.moc"
