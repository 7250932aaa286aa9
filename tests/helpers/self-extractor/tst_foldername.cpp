// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/helpers/self-extractor/moduletest.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QTest>

#include <csignal>

using namespace Qt::StringLiterals;

// A produced file is unpacked to the same path at each start, if possible: firewalls and other
// programs remember it.
class TestFolderName : public ModuleTest
{
    Q_OBJECT

private slots:
    void staysTheSame();
    void isAnotherOneForAnotherFile();
    void isAnotherOneAtTheSameTime();
    void isTakenOverFromAKilledStart();
    void isAnotherOneIfSomebodyPreparedIt_data();
    void isAnotherOneIfSomebodyPreparedIt();

private:
    QString programOf(const QString &file) const;
};

QString TestFolderName::programOf(const QString &file) const
{
    return m_run.run(file).value("program");
}

void TestFolderName::staysTheSame()
{
    const QString file = m_run.assembleProgram();
    const QString program = programOf(file);
    QVERIFY(program.contains(u"\\kp-"_s));
    QCOMPARE(programOf(file), program);
    QCOMPARE(programOf(file), program);
}

void TestFolderName::isAnotherOneForAnotherFile()
{
    const QString path = m_run.assembleProgram();
    const QString program = programOf(path);
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(file.setFileTime(QDateTime::currentDateTimeUtc().addSecs(-5),
                             QFileDevice::FileModificationTime));
    file.close();
    QVERIFY(programOf(path) != program);
}

void TestFolderName::isAnotherOneAtTheSameTime()
{
    const QString file = m_run.assembleProgram();
    const auto process = m_run.start(file, u" --wait"_s);
    QVERIFY(process != nullptr);
    QVERIFY(!ModuleRun::waitForOutput(*process, "program=").isEmpty());
    const QStringList living = m_run.leftovers();
    QCOMPARE(living.size(), 2);
    const QString other = programOf(file);
    QVERIFY(other.contains(u"\\kp-"_s));
    QVERIFY(!other.contains(living.first()));
    QCOMPARE(m_run.leftovers(), living);
    QCOMPARE(ModuleRun::finish(*process).exitCode, 7);
    QVERIFY(programOf(file).contains(living.first()));
}

void TestFolderName::isTakenOverFromAKilledStart()
{
    const QString file = m_run.assembleProgram();
    const auto process = m_run.start(file, u" --wait"_s);
    QVERIFY(process != nullptr);
    QVERIFY(!ModuleRun::waitForOutput(*process, "program=").isEmpty());
    const QStringList left = m_run.leftovers();
    for (const qint64 id : m_run.moduleProcesses()) {
        kill(static_cast<pid_t>(id), SIGKILL);
    }
    ModuleRun::finish(*process);
    WAIT_COMPARE(m_run.programProcesses(), QList<qint64>());
    QCOMPARE(m_run.leftovers(), left);
    QVERIFY(programOf(file).contains(left.first()));
}

void TestFolderName::isAnotherOneIfSomebodyPreparedIt_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("the folder") << "/mine.txt";
    QTest::newRow("a folder for the lock file") << ".lock/mine.txt";
}

void TestFolderName::isAnotherOneIfSomebodyPreparedIt()
{
    QFETCH(QString, name);
    const QString file = m_run.assembleProgram();
    const QString stable = programOf(file).section(u'\\', -3, -3);
    QVERIFY(stable.startsWith(u"kp-"_s));
    QVERIFY(writeTree(m_run.temporaryFolder(), {{stable + name, "mine"}}));
    const QStringList prepared = m_run.leftovers();
    const QString program = programOf(file);
    QVERIFY(program.contains(u"\\kp-"_s));
    QVERIFY(!program.contains(stable));
    QCOMPARE(contentOf(m_run.temporaryFolder() + u'/' + stable + name), QByteArray("mine"));
    QCOMPARE(m_run.leftovers(), prepared);
    QVERIFY(m_run.renewTemporaryFolder());
}

QTEST_GUILESS_MAIN(TestFolderName)
#include "tst_foldername.moc"
