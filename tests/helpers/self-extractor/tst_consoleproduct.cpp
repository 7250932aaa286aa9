// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/helpers/self-extractor/moduletest.h"

#include <QTest>

using namespace Qt::StringLiterals;
using sfx::ExitCode;

// Produced files that are programs for the console: shells wait for them, and they have their
// caller's console from Windows itself.
class TestConsoleProduct : public ModuleTest
{
    Q_OBJECT

private slots:
    void init();
    void shellsWaitForIt_data();
    void shellsWaitForIt();
    void isInTheCallersConsole_data();
    void isInTheCallersConsole();
    void passesStandardHandles();
    void keepsTheConsole();
    void leavesInterruptsToTheProgram();
    void tellsStandardError();

private:
    Run runInShell(const QStringList &lines, bool asBatch) const;
};

void TestConsoleProduct::init()
{
    ModuleTest::init();
    QVERIFY(m_run.prepareModule(QByteArray("WorkingFolder=\"caller\"\n"), true));
}

// Wine's cmd.exe runs the lines, from a batch file or from its standard input.
Run TestConsoleProduct::runInShell(const QStringList &lines, bool asBatch) const
{
    QStringList all{u"@echo off"_s, u"set TEMP="_s + windowsPath(m_run.temporaryFolder()),
                    u"set TMP=%TEMP%"_s};
    all += lines;
    all += u"exit /b %errorlevel%\r\n"_s;
    const QByteArray text = all.join(u"\r\n").toUtf8();
    const QString batch = m_run.path(u"lines.bat"_s);
    QProcess shell;
    m_run.prepare(shell);
    if (!writeFile(batch, text)) {
        return Run();
    }
    QStringList command{u"cmd.exe"_s};
    if (asBatch) {
        command += {u"/c"_s, windowsPath(batch)};
    } else {
        shell.setStandardInputFile(batch);
    }
    shell.start(u"wine"_s, command);
    return ModuleRun::finish(shell);
}

void TestConsoleProduct::shellsWaitForIt_data()
{
    QTest::addColumn<bool>("asBatch");
    QTest::newRow("in a batch file") << true;
    QTest::newRow("at the prompt") << false;
}

void TestConsoleProduct::shellsWaitForIt()
{
    QFETCH(bool, asBatch);
    const QString file = windowsPath(m_run.assembleProgram());
    const Run result
        = runInShell({u"\"%1\" --exit=42"_s.arg(file), u"echo after=%errorlevel%"_s}, asBatch);
    QVERIFY2(!result.value("program").isEmpty(), qPrintable(result.output + result.errors));
    QVERIFY2(result.output.contains("after=42"), result.output.constData());
    QVERIFY(result.output.indexOf("console=") < result.output.indexOf("after=42"));
}

void TestConsoleProduct::isInTheCallersConsole_data()
{
    QTest::addColumn<QString>("option");
    QTest::addColumn<QString>("hasConsole");
    QTest::newRow("with a console") << "--console"
                                    << "1";
    QTest::newRow("without one: no new one is opened") << "--detached"
                                                       << "0";
}

void TestConsoleProduct::isInTheCallersConsole()
{
    QFETCH(QString, option);
    QFETCH(QString, hasConsole);
    const Run result = m_run.run(m_run.assembleProgram(), QString(), {option});
    QCOMPARE(result.exitCode, 7);
    QCOMPARE(result.value("console"), hasConsole);
    QCOMPARE(result.value("folder"), windowsPath(m_run.callersFolder()));
}

void TestConsoleProduct::passesStandardHandles()
{
    const auto process = m_run.start(m_run.assembleProgram(), u" --echo"_s);
    QVERIFY(process != nullptr);
    process->write("from the caller\n");
    const Run result = ModuleRun::finish(*process);
    QCOMPARE(result.errors.trimmed(), QByteArray("from the caller"));
    QCOMPARE(result.value("tail"), u" --echo"_s);
    QCOMPARE(result.exitCode, 7);
}

// A graphical one leaves it after 20 seconds.
void TestConsoleProduct::keepsTheConsole()
{
    const Run result = m_run.run(m_run.assembleProgram(), u" --join-late"_s, {u"--console"_s});
    QCOMPARE(result.value("joined"), u"1"_s);
    QCOMPARE(result.exitCode, 7);
}

void TestConsoleProduct::leavesInterruptsToTheProgram()
{
    const Run result
        = m_run.run(m_run.assembleProgram(), u" --ctrl-c --exit=6"_s, {u"--console"_s});
    QCOMPARE(result.value("sent"), u"1"_s);
    QCOMPARE(result.value("interrupted"), u"1"_s);
    QCOMPARE(result.value("ended"), u"6"_s);
}

void TestConsoleProduct::tellsStandardError()
{
    const Run result = m_run.run(m_run.assemble(Tree{{u"other.exe"_s, "x"}}, u"main.exe"_s));
    QCOMPARE(result.value("ended").toUInt(), static_cast<quint32>(ExitCode::ProgramMissing));
    QVERIFY2(result.errors.startsWith("main Portable: "), result.errors.constData());
}

QTEST_GUILESS_MAIN(TestConsoleProduct)
#include "tst_consoleproduct.moc"
