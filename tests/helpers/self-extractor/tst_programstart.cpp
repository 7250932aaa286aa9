// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/helpers/self-extractor/moduletest.h"

#include <QTest>

// The data that the packed program receives at its start, and the results that reach the caller.
class TestProgramStart : public ModuleTest
{
    Q_OBJECT

private slots:
    void knowsWhereItComesFrom();
    void passesArgumentsVerbatim_data();
    void passesArgumentsVerbatim();
    void passesExitCodes_data();
    void passesExitCodes();
    void passesTheWayToShow_data();
    void passesTheWayToShow();
    void passesStandardHandles();
    void passesTheTitle();
    void passesFileDescriptors();
    void keepsRedirections();
};

void TestProgramStart::knowsWhereItComesFrom()
{
    const QString file = m_run.assembleProgram();
    const Run result = m_run.run(file);
    const QString folder = result.value("folder");
    QVERIFY(folder.startsWith(windowsPath(m_run.temporaryFolder()) + QStringLiteral("\\kp-")));
    QCOMPARE(result.value("program"), folder + QStringLiteral("\\main.exe"));
    QCOMPARE(result.value("line"), u'"' + folder + QStringLiteral("\\main.exe\""));
    QCOMPARE(result.value("KESTRELPACK_DIR"), folder);
    QCOMPARE(result.value("KESTRELPACK_EXE"), windowsPath(file));
    QCOMPARE(result.value("KESTRELPACK_EXE_DIR"), windowsPath(file).section(u'\\', 0, -2));
    QCOMPARE(result.value("KESTRELPACK_CWD"), windowsPath(m_run.callersFolder()));
}

void TestProgramStart::passesArgumentsVerbatim_data()
{
    QTest::addColumn<QString>("tail");
    QTest::newRow("none") << "";
    QTest::newRow("plain ones") << " one two";
    QTest::newRow("blanks in quotes") << " one \"two three\"";
    QTest::newRow("runs of blanks and tabs") << "   one \t two  ";
    QTest::newRow("an empty one") << " \"\" x";
    QTest::newRow("nothing but an empty one") << " \"\"";
    QTest::newRow("escaped quotes") << " \"a \\\"b\\\" c\"";
    QTest::newRow("doubled quotes") << " \"a \"\"b\"\" c\"";
    QTest::newRow("backslashes at the end") << " \"c:\\x y\\\\\" d\\";
    QTest::newRow("an open quote") << " \"a b";
    QTest::newRow("other scripts") << QString(" \u4e2d\u6587 \"\U0001f600 x\"");
    QTest::newRow("more than a thousand characters") << " " + QString("abc ").repeated(2000) + "z";
    // The whole line has 32766 characters, including the path of the file. Windows accepts no more.
    const qsizetype left = 32766 - windowsPath(m_run.producedFile()).size() - 2;
    QTest::newRow("as many as Windows allows")
        << ' ' + QString("abc ").repeated(9000).left(left - 1);
}

void TestProgramStart::passesArgumentsVerbatim()
{
    QFETCH(QString, tail);
    const Run result = m_run.run(m_run.assembleProgram(), tail);
    QCOMPARE(result.value("line").section(u'"', 2), tail);
    QCOMPARE(result.exitCode, 7);
}

void TestProgramStart::passesExitCodes_data()
{
    QTest::addColumn<quint32>("code");
    for (const quint32 code :
         {0u, 1u, 255u, 256u, 259u, 0x7fffffffu, 0x80000000u, 0xc0000005u, 0xffffffffu}) {
        QTest::addRow("%u", code) << code;
    }
}

void TestProgramStart::passesExitCodes()
{
    QFETCH(quint32, code);
    const Run result = m_run.run(m_run.assembleProgram(), QStringLiteral(" --exit=%1").arg(code));
    QCOMPARE(result.value("ended"), QString::number(code)); // all 32 bits
}

void TestProgramStart::passesTheWayToShow_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QString>("show");
    QTest::newRow("none given") << QStringList() << QString();
    QTest::newRow("hidden") << QStringList("--show=0") << "0";
    QTest::newRow("maximised") << QStringList("--show=3") << "3";
    QTest::newRow("minimised, not active") << QStringList("--show=7") << "7";
}

void TestProgramStart::passesTheWayToShow()
{
    QFETCH(QStringList, options);
    QFETCH(QString, show);
    QCOMPARE(m_run.run(m_run.assembleProgram(), QString(), options).value("show"), show);
}

void TestProgramStart::passesStandardHandles()
{
    const auto process = m_run.start(m_run.assembleProgram(), QStringLiteral(" --echo"));
    QVERIFY(process != nullptr);
    process->write("from the caller\n");
    const Run result = ModuleRun::finish(*process);
    QCOMPARE(result.errors.trimmed(), QByteArray("from the caller"));
    QCOMPARE(result.value("tail"), QStringLiteral(" --echo"));
    QCOMPARE(result.exitCode, 7);
}

void TestProgramStart::passesTheTitle()
{
    const QString shortcut = QStringLiteral("C:\\my shortcut.lnk");
    QCOMPARE(m_run.run(m_run.assembleProgram(), QString(), {QStringLiteral("--title=") + shortcut})
                 .value("title"),
             shortcut);
}

// The C runtime hands open file descriptors on to other programs.
void TestProgramStart::passesFileDescriptors()
{
    const QString file = m_run.path(QStringLiteral("descriptor"));
    const Run result = m_run.run(m_run.assembleProgram(), QStringLiteral(" --by-number"),
                                 {QStringLiteral("--number=") + windowsPath(file)});
    QCOMPARE(result.exitCode, 7);
    QCOMPARE(contentOf(file), QByteArray("by number"));
}

// Joining the caller's console must not replace a redirected handle.
void TestProgramStart::keepsRedirections()
{
    const Run result = m_run.run(m_run.assembleProgram(), QStringLiteral(" --exit=5"),
                                 {QStringLiteral("--console-later")});
    QCOMPARE(result.value("tail"), QStringLiteral(" --exit=5"));
}

QTEST_GUILESS_MAIN(TestProgramStart)
#include "tst_programstart.moc"
