// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/helpers/self-extractor/moduletest.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTest>

#include <vector>

// A run that ends by itself leaves nothing in the temporary folder, whatever the program did to its
// folder.
class TestCleanup : public ModuleTest
{
    Q_OBJECT

private slots:
    void holdsALockFileMeanwhile();
    void removesReadOnlyFilesAndFolders();
    void doesNotFollowLinks();
    void removesLongNames();
    void removesDeepTrees();
    void leavesLockedFilesToTheNextStart();
    void startsManyAtOnce();
};

void TestCleanup::holdsALockFileMeanwhile()
{
    QString folder;
    const auto process = startWaiting(assembleWithData(), folder);
    QVERIFY(process != nullptr);
    const QString name = folder.section(u'/', -2, -2);
    QCOMPARE(m_run.leftovers(), QStringList({name, name + QStringLiteral(".lock")}));
    QCOMPARE(ModuleRun::finish(*process).exitCode, 7);
}

void TestCleanup::removesReadOnlyFilesAndFolders()
{
    QString folder;
    const auto process = startWaiting(assembleWithData(), folder);
    QVERIFY(process != nullptr);
    QVERIFY(writeTree(folder,
                      {{QStringLiteral("fixed/file.txt"), "x"},
                       {QStringLiteral("fixed/empty/"), QByteArray()}}));
    const auto readOnly = QFileDevice::ReadOwner | QFileDevice::ExeOwner;
    QVERIFY(QFile::setPermissions(folder + QStringLiteral("/data.txt"), readOnly));
    QVERIFY(QFile::setPermissions(folder + QStringLiteral("/fixed/file.txt"), readOnly));
    QVERIFY(QFile::setPermissions(folder + QStringLiteral("/fixed/empty"), readOnly));
    QVERIFY(QFile::setPermissions(folder + QStringLiteral("/fixed"), readOnly));
    QCOMPARE(ModuleRun::finish(*process).exitCode, 7);
}

// Wine 8 cannot remove a link to a folder, for any program. If asked to remove a link to a file, it
// removes the link's target. So this test has no link to a file, and checks only the target.
void TestCleanup::doesNotFollowLinks()
{
    const Tree outside{{QStringLiteral("outside/file.txt"), "to stay"},
                       {QStringLiteral("outside/folder/file.txt"), "to stay"}};
    QVERIFY(writeTree(m_run.callersFolder(), outside));
    QString folder;
    const auto process = startWaiting(assembleWithData(), folder);
    QVERIFY(process != nullptr);
    const QString target = m_run.path(QStringLiteral("outside"));
    QVERIFY(QDir().mkpath(folder + QStringLiteral("/deep")));
    QVERIFY(QFile::link(target, folder + QStringLiteral("/folder-link")));
    QVERIFY(QFile::link(target, folder + QStringLiteral("/deep/folder-link")));
    QCOMPARE(ModuleRun::finish(*process).exitCode, 7);
    for (auto item = outside.cbegin(); item != outside.cend(); ++item) {
        QCOMPARE(contentOf(m_run.path(item.key())), item.value());
    }
    QVERIFY(!QFile::exists(folder + QStringLiteral("/main.exe")));
    QVERIFY(m_run.renewTemporaryFolder());
}

void TestCleanup::removesLongNames()
{
    const QString name = QString(150, u'n'); // Wine's limit for a path is 259 units
    const Tree tree{{name + QStringLiteral(".exe"), ModuleRun::programBytes()},
                    {name + u'/' + name + u'/' + name + u'/' + name, "x"}};
    const Run result
        = m_run.run(m_run.assemble(tree, name + QStringLiteral(".exe")), QStringLiteral(" a"));
    QCOMPARE(result.errors, QByteArray());
    QCOMPARE(result.exitCode, 7);
    QVERIFY(result.value("folder").endsWith(QStringLiteral("\\app"))); // short, if possible
    QVERIFY(result.value("program").endsWith(name + QStringLiteral(".exe")));
}

void TestCleanup::removesDeepTrees()
{
    QString folder;
    const auto process = startWaiting(assembleWithData(), folder);
    QVERIFY(process != nullptr);
    QVERIFY(QDir().mkpath(folder + QStringLiteral("/d").repeated(200)));
    QCOMPARE(ModuleRun::finish(*process).exitCode, 7);
}

void TestCleanup::leavesLockedFilesToTheNextStart()
{
    QString folder;
    const auto process = startWaiting(assembleWithData(), folder);
    QVERIFY(process != nullptr);
    const QString locked = folder + QStringLiteral("/data.txt");
    const auto holder = m_run.hold(locked);
    QVERIFY(holder != nullptr);
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(ModuleRun::finish(*process).exitCode, 7);
    QVERIFY(timer.elapsed() >= 4000); // it has retried for some time
    const QString name = folder.section(u'/', -2, -2);
    const QStringList left{name, name + QStringLiteral(".lock")};
    QCOMPARE(m_run.leftovers(), left);
    QCOMPARE(QDir(folder).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
             QStringList("data.txt"));

    // A later start does not wait for the locked file. If the machine stalls, a single start may
    // not show that.
    const QString file = assembleWithData();
    int starts = 0;
    do {
        QVERIFY(++starts <= 10);
        timer.restart();
        QCOMPARE(m_run.run(file).exitCode, 7);
    } while (timer.elapsed() >= 4000);
    QCOMPARE(m_run.leftovers(), left);
    ModuleRun::finish(*holder);
    QCOMPARE(m_run.run(assembleWithData()).exitCode, 7);
}

void TestCleanup::startsManyAtOnce()
{
    const QString file = assembleWithData();
    std::vector<std::unique_ptr<QProcess>> processes;
    for (int i = 0; i < 20; ++i) {
        const QString tail = QStringLiteral(" --wait --launch=0 --exit=%1").arg(i);
        processes.push_back(m_run.start(file, tail));
        QVERIFY(processes.back() != nullptr);
    }
    for (const auto &process : processes) { // each process has its own files while it runs
        QVERIFY(!ModuleRun::waitForOutput(*process, "data=still here").isEmpty());
    }
    QCOMPARE(m_run.leftovers().size(), 40);
    for (std::size_t i = 0; i < processes.size(); ++i) {
        QCOMPARE(ModuleRun::finish(*processes[i]).exitCode, static_cast<int>(i));
    }
}

QTEST_GUILESS_MAIN(TestCleanup)
#include "tst_cleanup.moc"
