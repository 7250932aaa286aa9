// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/helpers/self-extractor/moduletest.h"

#include <QDir>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QTest>

#include <vector>

namespace {

QStringList allFiles(const QString &folder)
{
    QStringList names;
    QDirIterator files(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        names += files.next().mid(folder.size() + 1);
    }
    names.sort();
    return names;
}

} // namespace

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
    void removesMoreFilesThanItOpensAtOnce();
    void removesNothingWhileAFileIsInUse_data();
    void removesNothingWhileAFileIsInUse();
    void removesNothingUnderAnEscapedProgram();
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
    QVERIFY(m_run.hasTemporary(QStringLiteral("kp-*.lock"))); // for a later start
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

void TestCleanup::removesMoreFilesThanItOpensAtOnce()
{
    QString folder;
    const auto process = startWaiting(assembleWithData(), folder);
    QVERIFY(process != nullptr);
    for (int i = 0; i < 9000; ++i) {
        QFile file(folder + u'/' + QString::number(i));
        QVERIFY(file.open(QIODevice::WriteOnly));
    }
    QCOMPARE(ModuleRun::finish(*process).exitCode, 7);
}

void TestCleanup::removesNothingWhileAFileIsInUse_data()
{
    QTest::addColumn<QString>("held");
    QTest::newRow("data of the program") << "data.txt";
    QTest::newRow("a read-only file") << "readonly.txt";
    QTest::newRow("a library") << "z/last.dll";
    QTest::newRow("one of the files that several threads mark") << "5/5.txt";
}

void TestCleanup::removesNothingWhileAFileIsInUse()
{
    QFETCH(QString, held);
    QString folder;
    const auto process = startWaiting(assembleWithData(), folder);
    QVERIFY(process != nullptr);
    Tree tree{{QStringLiteral("readonly.txt"), "x"},
              {QStringLiteral("a/first.dll"), "x"},
              {QStringLiteral("z/last.dll"), "x"}};
    for (int i = 0; i < 80; ++i) {
        tree.insert(QStringLiteral("%1/%2.txt").arg(i / 10).arg(i % 10), "x");
    }
    QVERIFY(writeTree(folder, tree));
    QVERIFY(
        QFile::setPermissions(folder + QStringLiteral("/readonly.txt"), QFileDevice::ReadOwner));
    const QStringList all = allFiles(folder);
    const auto holder = m_run.hold(folder + u'/' + held);
    QVERIFY(holder != nullptr);
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(ModuleRun::finish(*process).exitCode, 7);
    QVERIFY(timer.elapsed() >= 4000); // it has retried for some time
    const QString name = folder.section(u'/', -2, -2);
    const QStringList left{name, name + QStringLiteral(".lock")};
    QCOMPARE(m_run.leftovers(), left);
    QCOMPARE(allFiles(folder), all);
    QVERIFY(!(QFileInfo(folder + QStringLiteral("/readonly.txt")).permissions()
              & QFileDevice::WriteOwner));

    // A later start does not wait for the file. If the machine stalls, a single start may not show
    // that.
    const QString file = assembleWithData();
    int starts = 0;
    do {
        QVERIFY(++starts <= 10);
        timer.restart();
        QCOMPARE(m_run.run(file).exitCode, 7);
    } while (timer.elapsed() >= 4000);
    QCOMPARE(m_run.leftovers(), left);
    QCOMPARE(allFiles(folder), all);
    ModuleRun::finish(*holder);
    QCOMPARE(m_run.run(assembleWithData()).exitCode, 7);
}

// The main program starts itself outside the job, and ends: an application that starts itself again
// with more rights does the same.
void TestCleanup::removesNothingUnderAnEscapedProgram()
{
    const QString file = assembleWithData();
    const auto process = m_run.start(file, QStringLiteral(" --escape-and-end"));
    QVERIFY(process != nullptr);
    QVERIFY(!ModuleRun::waitForOutput(*process, "ended=7").isEmpty());
    ModuleRun::finish(*process);
    const QStringList left = m_run.leftovers();
    QCOMPARE(left.size(), 2);
    const QString folder = m_run.temporaryFolder() + u'/' + left.first() + QStringLiteral("/main");
    QCOMPARE(allFiles(folder), QStringList({"data.txt", "main.exe"}));
    QCOMPARE(m_run.run(file).exitCode, 7); // the next start leaves it alone, too
    QCOMPARE(m_run.leftovers(), left);
    QCOMPARE(allFiles(folder), QStringList({"data.txt", "main.exe"}));
    QVERIFY(writeTree(folder, {{QStringLiteral("stop.txt"), ""}}));
    WAIT_COMPARE(m_run.programProcesses(), QList<qint64>());
    QCOMPARE(m_run.run(file).exitCode, 7);
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
