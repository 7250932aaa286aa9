// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/helpers/self-extractor/moduletest.h"

#include <QElapsedTimer>
#include <QTest>

#include <csignal>

// The program, its child processes, and the module end together.
class TestProcessTree : public ModuleTest
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void waitsForTheWholeTree_data();
    void waitsForTheWholeTree();
    void endsTheTreeWithItself_data();
    void endsTheTreeWithItself();
    void letsOutWhoAsksForIt();
    void doesNotWaitForABrowser();
    void staysInTheConsoleForProgramsThatJoinIt();
    void leavesTheConsole();
    void leavesInterruptsToTheProgram();
    void isInterruptedBeforeTheProgramRuns();
};

void TestProcessTree::init()
{
    QVERIFY(m_run.renewTemporaryFolder());
    m_run.pretendOldWindows(false);
}

void TestProcessTree::cleanup()
{
    QCOMPARE(m_run.leftovers(), QStringList());
    WAIT_COMPARE(m_run.moduleProcesses(), QList<qint64>());
    WAIT_COMPARE(m_run.programProcesses(), QList<qint64>());
}

void TestProcessTree::waitsForTheWholeTree_data()
{
    QTest::addColumn<int>("generations");
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<bool>("oldWindows");
    QTest::newRow("a launcher that starts the real program and ends")
        << 1 << QStringList() << false;
    QTest::newRow("a launcher's launcher") << 3 << QStringList() << false;
    QTest::newRow("within the caller's job") << 2 << QStringList("--job") << false;
    QTest::newRow("a launcher's launcher before Windows 10") << 3 << QStringList() << true;
    QTest::newRow("within the caller's job before Windows 10") << 2 << QStringList("--job") << true;
}

void TestProcessTree::waitsForTheWholeTree()
{
    QFETCH(int, generations);
    QFETCH(QStringList, options);
    QFETCH(bool, oldWindows);
    m_run.pretendOldWindows(oldWindows);
    const Run result = m_run.run(assembleWithData(),
                                 QStringLiteral(" --launch=%1 --exit=5").arg(generations), options);
    QCOMPARE(result.value("data"), QStringLiteral("still here"));
    QCOMPARE(result.value("ended"), QStringLiteral("5")); // the main program's exit code
    QVERIFY(!result.output.contains("no job"));
}

void TestProcessTree::endsTheTreeWithItself_data()
{
    QTest::addColumn<QString>("tail");
    QTest::addColumn<int>("processes");
    QTest::addColumn<bool>("oldWindows");
    QTest::newRow("the program alone") << " --stay" << 1 << false;
    QTest::newRow("a program and what it started") << " --start-one --stay" << 2 << false;
    QTest::newRow("what the program left behind") << " --start-one" << 1 << false;
    QTest::newRow("the program alone before Windows 10") << " --stay" << 1 << true;
    QTest::newRow("what the program left behind before Windows 10") << " --start-one" << 1 << true;
}

void TestProcessTree::endsTheTreeWithItself()
{
    QFETCH(QString, tail);
    QFETCH(int, processes);
    QFETCH(bool, oldWindows);
    m_run.pretendOldWindows(oldWindows);
    const auto process = m_run.start(assembleWithData(), tail);
    QVERIFY(process != nullptr);
    // The second process prints its start too.
    const int starts = tail.contains(QStringLiteral("--start-one")) ? 2 : 1;
    QVERIFY(!ModuleRun::waitForOutput(*process, "program=", starts).isEmpty());
    WAIT_COMPARE(m_run.programProcesses().size(), processes);
    const QList<qint64> modules = m_run.moduleProcesses();
    QCOMPARE(modules.size(), 1);
    kill(static_cast<pid_t>(modules.first()), SIGKILL);
    WAIT_COMPARE(m_run.programProcesses(), QList<qint64>());
    ModuleRun::finish(*process);
    QVERIFY(m_run.renewTemporaryFolder());
}

void TestProcessTree::letsOutWhoAsksForIt()
{
    QCOMPARE(m_run.run(assembleWithData(), QStringLiteral(" --escape")).value("escaped"),
             QStringLiteral("1"));
}

// A program from elsewhere that the main program has opened stays in the job. The module neither
// waits for it nor takes it along.
void TestProcessTree::doesNotWaitForABrowser()
{
    const QString folder = m_run.path(QStringLiteral("elsewhere"));
    QVERIFY(writeTree(folder, {{QStringLiteral("browser.exe"), ModuleRun::programBytes()}}));
    const QString browser = windowsPath(folder) + QStringLiteral("\\browser.exe");
    const Run result = m_run.run(assembleWithData(), QStringLiteral(" --open=") + browser);
    QCOMPARE(result.value("opened"), QStringLiteral("1"));
    QCOMPARE(result.exitCode, 7);
    const QList<qint64> browsers = ModuleRun::processesFrom(folder);
    for (const qint64 id : browsers) {
        kill(static_cast<pid_t>(id), SIGKILL);
    }
    QCOMPARE(browsers.size(), 1);
    WAIT_COMPARE(ModuleRun::processesFrom(folder), QList<qint64>());
}

void TestProcessTree::staysInTheConsoleForProgramsThatJoinIt()
{
    const Run result
        = m_run.run(assembleWithData(), QStringLiteral(" --join"), {QStringLiteral("--console")});
    QCOMPARE(result.value("joined"), QStringLiteral("1"));
}

// Later it leaves the console, so that it can clean up after the console has closed.
void TestProcessTree::leavesTheConsole()
{
    const Run result = m_run.run(assembleWithData(), QStringLiteral(" --join-not"),
                                 {QStringLiteral("--console")});
    QCOMPARE(result.value("joined-not"), QStringLiteral("1"));
    QCOMPARE(result.exitCode, 7);
}

void TestProcessTree::leavesInterruptsToTheProgram()
{
    const Run result = m_run.run(assembleWithData(), QStringLiteral(" --ctrl-c --exit=6"),
                                 {QStringLiteral("--console")});
    QVERIFY2(result.value("sent") == QStringLiteral("1"),
             ("output: " + result.output + "\nerrors: " + result.errors).constData());
    QCOMPARE(result.value("interrupted"), QStringLiteral("1"));
    QCOMPARE(result.value("ended"), QStringLiteral("6"));
}

void TestProcessTree::isInterruptedBeforeTheProgramRuns()
{
    Tree tree{{QStringLiteral("main.exe"), ModuleRun::programBytes()}};
    for (int i = 0; i < 5000; ++i) {
        tree[QStringLiteral("files/%1.txt").arg(i)] = QByteArray::number(i);
    }
    const Run result = m_run.run(m_run.assemble(tree, QStringLiteral("main.exe")), QString(),
                                 {QStringLiteral("--console"), QStringLiteral("--interrupt")});
    QCOMPARE(result.value("ended").toUInt(), static_cast<quint32>(sfx::ExitCode::Interrupted));
    QCOMPARE(result.value("program"), QString());
    QVERIFY(result.errors.contains("Interrupted"));
}

QTEST_GUILESS_MAIN(TestProcessTree)
#include "tst_processtree.moc"
