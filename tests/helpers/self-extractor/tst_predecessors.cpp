// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/helpers/self-extractor/modulerun.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QTest>

#include <csignal>
#include <functional>

#include <unistd.h>

using namespace Qt::StringLiterals;

// A start removes the files of earlier starts that were killed, and leaves other files alone.
class TestPredecessors : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleansUpAfterAKilledOne_data();
    void cleansUpAfterAKilledOne();
    void removesWhatIsDead();
    void leavesAloneWhatIsNotOurs();
    void leavesAloneWhatBelongsToOthers();
    void leavesAloneWhatLives();
    void leavesAloneWhatAnEscapedProgramUses();
    void leavesAloneWhatIsInUse();
    void doesNotFollowADeadOnesLinks();
    void removesNoMoreThanSixteenAtOnce();
    void stopsInTimeAndGoesOnLater();

private:
    void killModule() const;
    qsizetype entries() const;
    void startWhile(const std::function<bool()> &condition) const;
    void startUntilEmpty() const;
    void startUntilADeadOneIsGone() const;

    ModuleRun m_run;
    QString m_file;
    QString m_large; // with many files
    QString m_slow;  // never has enough time
};

void TestPredecessors::initTestCase()
{
    QVERIFY(m_run.setUp());
    Tree tree{{u"main.exe"_s, ModuleRun::programBytes()}};
    for (int i = 0; i < 300; ++i) {
        tree[u"files/%1.txt"_s.arg(i)] = QByteArray::number(i);
    }
    // Only one file can have the name that the fixture uses.
    const QString file = m_run.assemble(tree, u"main.exe"_s);
    m_large = m_run.path(u"made/produced one, large.exe"_s);
    QVERIFY(QFile::rename(file, m_large));
    tree = {{u"main.exe"_s, ModuleRun::programBytes()}, {u"data.txt"_s, "in use"}};
    m_run.pretendSlowness(true);
    const QString slow = m_run.assemble(tree, u"main.exe"_s);
    m_slow = m_run.path(u"made/produced one, slow.exe"_s);
    QVERIFY(QFile::rename(slow, m_slow));
    m_run.pretendSlowness(false);
    m_file = m_run.assemble(tree, u"main.exe"_s);
}

void TestPredecessors::init()
{
    QVERIFY(m_run.renewTemporaryFolder());
}

void TestPredecessors::killModule() const
{
    for (const qint64 id : m_run.moduleProcesses()) {
        kill(static_cast<pid_t>(id), SIGKILL);
    }
}

// Counts entries in the temporary folder and in all folders below it.
qsizetype TestPredecessors::entries() const
{
    qsizetype count = 0;
    QDirIterator all(m_run.temporaryFolder(),
                     QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot,
                     QDirIterator::Subdirectories);
    for (; all.hasNext(); all.next()) {
        ++count;
    }
    return count;
}

// Each start spends half a second on this. Usually that is enough to remove everything, but not if
// the machine is busy.
void TestPredecessors::startWhile(const std::function<bool()> &condition) const
{
    for (int starts = 0; condition(); ++starts) {
        QVERIFY2(starts < 100, qPrintable(u"%1 left"_s.arg(entries())));
        m_run.endHalfStarted();
        QCOMPARE(m_run.run(m_file).exitCode, 7);
    }
}

void TestPredecessors::startUntilEmpty() const
{
    startWhile([this] { return entries() > 0; });
}

// This folder's name is the last in the order, so every other folder has been checked before it.
void TestPredecessors::startUntilADeadOneIsGone() const
{
    const QString folder = m_run.temporaryFolder() + u"/kp-ffffffffffffffffffff"_s;
    QVERIFY(writeTree(folder, {{u"main/x"_s, "x"}}));
    QVERIFY(QFile(folder + u".lock"_s).open(QIODevice::WriteOnly));
    startWhile([&folder] { return QFile::exists(folder + u".lock"_s); });
}

void TestPredecessors::cleansUpAfterAKilledOne_data()
{
    QTest::addColumn<QString>("sign"); // shows that the moment to kill the process has come
    // The files come in alphabetical order.
    QTest::newRow("with its lock file made") << "*.lock";
    QTest::newRow("with its folder made") << "kp-*/main";
    QTest::newRow("at the first files") << "kp-*/main/files/1.txt";
    QTest::newRow("at a fifth") << "kp-*/main/files/150.txt";
    QTest::newRow("in the middle of unpacking") << "kp-*/main/files/230.txt";
    QTest::newRow("at the last files") << "kp-*/main/files/99.txt";
    QTest::newRow("with everything unpacked") << "kp-*/main/main.exe";
    QTest::newRow("with the program running") << "program=";
    QTest::newRow("with a program that another one started running") << "program=, twice";
    QTest::newRow("while it is removing its folder") << "removing";
}

void TestPredecessors::cleansUpAfterAKilledOne()
{
    QFETCH(QString, sign);
    const bool startsOne = sign.endsWith(u"twice"_s);
    const auto process = m_run.start(m_large, startsOne ? u" --start-one"_s : u" --wait"_s);
    QVERIFY(process != nullptr);
    if (sign.contains(u'*')) {
        while (!m_run.hasTemporary(sign)) {
            QVERIFY(process->state() == QProcess::Running || process->waitForStarted(patience));
        }
    } else {
        QVERIFY(!ModuleRun::waitForOutput(*process, "program=", startsOne ? 2 : 1).isEmpty());
    }
    const QString link = m_run.temporaryFolder() + u'/' + m_run.leftovers().value(0) + u"/link"_s;
    if (sign == u"removing"_s) {
        // Wine 8 cannot remove a link to a folder. The module tries again until it is killed.
        QVERIFY(QFile::link(m_run.path(u"made"_s), link));
        process->write("\n");
        WAIT_VERIFY(!m_run.hasTemporary(u"kp-*/main"_s));
    }
    killModule();
    ModuleRun::finish(*process);
    QFile::remove(link);
    WAIT_COMPARE(m_run.programProcesses(), QList<qint64>());
    QVERIFY(m_run.hasTemporary(u"kp-*.lock"_s));

    startUntilEmpty();
}

// A folder and its lock file, an empty folder, a lock file without a folder.
void TestPredecessors::removesWhatIsDead()
{
    QVERIFY(writeTree(m_run.temporaryFolder(),
                      {{u"kp-0123456789abcdef0121/main/main.exe"_s, "x"},
                       {u"kp-0123456789abcdef0121.lock"_s, ""},
                       {u"kp-0123456789abcdef0122/"_s, QByteArray()},
                       {u"kp-0123456789abcdef0122.lock"_s, ""},
                       {u"kp-0123456789abcdef0123.lock"_s, ""}}));
    startUntilEmpty();
}

void TestPredecessors::leavesAloneWhatIsNotOurs()
{
    const Tree tree{{u"kp-0123456789abcdef0123/main/no lock file"_s, "x"},
                    {u"kp-0123456789abcdef012/main/a name that is too short"_s, "x"},
                    {u"kp-0123456789abcdef012.lock"_s, ""},
                    {u"kp-0123456789ABCDEF0124/main/a name in large letters"_s, "x"},
                    {u"kp-0123456789ABCDEF0124.lock"_s, ""},
                    {u"kp-0123456789abcdef0125/main/x"_s, "x"},
                    {u"kp-0123456789abcdef0125.lock/a folder for a lock file"_s, "x"},
                    {u"kp-0123456789abcdef0126"_s, "a file for a folder"},
                    {u"kp-0123456789abcdef0126.lock"_s, ""},
                    {u"another program's.lock"_s, ""},
                    {u"another program's/file"_s, "y"}};
    QVERIFY(writeTree(m_run.temporaryFolder(), tree));
    startUntilADeadOneIsGone();
    for (auto item = tree.cbegin(); item != tree.cend(); ++item) {
        const QString path = m_run.temporaryFolder() + u'/' + item.key();
        QVERIFY2(QFile::exists(path), qPrintable(item.key()));
        QCOMPARE(contentOf(path), item.value());
    }
}

// Only root can make another user the owner of a file.
void TestPredecessors::leavesAloneWhatBelongsToOthers()
{
    const QString folder = m_run.temporaryFolder() + u"/kp-0123456789abcdef0123"_s;
    const QString withTheirLockFile = m_run.temporaryFolder() + u"/kp-0123456789abcdef0124"_s;
    for (const QString &name : {folder, withTheirLockFile}) {
        QVERIFY(writeTree(name, {{u"main/x"_s, "x"}}));
        QVERIFY(QFile(name + u".lock"_s).open(QIODevice::WriteOnly));
    }
    for (const QString &given : {folder, withTheirLockFile + u".lock"_s}) {
        if (chown(QFile::encodeName(given).constData(), 65534, 65534) != 0) {
            QSKIP("only root can give files away");
        }
    }
    startUntilADeadOneIsGone();
    QCOMPARE(contentOf(folder + u"/main/x"_s), QByteArray("x"));
    QCOMPARE(contentOf(withTheirLockFile + u"/main/x"_s), QByteArray("x"));
}

void TestPredecessors::leavesAloneWhatLives()
{
    const auto process = m_run.start(m_file, u" --wait"_s);
    QVERIFY(process != nullptr);
    QVERIFY(!ModuleRun::waitForOutput(*process, "program=").isEmpty());
    const QStringList living = m_run.leftovers();
    QCOMPARE(living.size(), 2);
    QCOMPARE(m_run.run(m_file).exitCode, 7);
    QCOMPARE(m_run.leftovers(), living);
    QVERIFY(QFile::exists(m_run.temporaryFolder() + u'/' + living.first() + u"/main/main.exe"_s));
    QCOMPARE(ModuleRun::finish(*process).exitCode, 7);
    QCOMPARE(m_run.leftovers(), QStringList());
}

// The module and its job are dead, but a program that had left the job still runs.
void TestPredecessors::leavesAloneWhatAnEscapedProgramUses()
{
    const auto process = m_run.start(m_file, u" --escape-and-stay"_s);
    QVERIFY(process != nullptr);
    QVERIFY(!ModuleRun::waitForOutput(*process, "program=", 2).isEmpty());
    killModule();
    WAIT_COMPARE(m_run.programProcesses().size(), 1);
    QCOMPARE(m_run.run(m_file).exitCode, 7);
    QVERIFY(m_run.hasTemporary(u"kp-*/main/data.txt"_s));
    for (const qint64 id : m_run.programProcesses()) {
        kill(static_cast<pid_t>(id), SIGKILL);
    }
    WAIT_COMPARE(m_run.programProcesses(), QList<qint64>());
    ModuleRun::finish(*process);
    startUntilEmpty();
}

// Not even the files that are not in use are removed.
void TestPredecessors::leavesAloneWhatIsInUse()
{
    const QString folder = m_run.temporaryFolder() + u"/kp-0123456789abcdef0123"_s;
    const Tree tree{{u"main/a.txt"_s, "a"}, {u"main/b/held.txt"_s, "b"}, {u"main/c.dll"_s, "c"}};
    QVERIFY(writeTree(folder, tree));
    QVERIFY(QFile(folder + u".lock"_s).open(QIODevice::WriteOnly));
    const auto holder = m_run.hold(folder + u"/main/b/held.txt"_s);
    QVERIFY(holder != nullptr);
    startUntilADeadOneIsGone();
    for (auto item = tree.cbegin(); item != tree.cend(); ++item) {
        QCOMPARE(contentOf(folder + u'/' + item.key()), item.value());
    }
    ModuleRun::finish(*holder);
    startUntilEmpty();
}

void TestPredecessors::doesNotFollowADeadOnesLinks()
{
    QVERIFY(writeTree(m_run.callersFolder(), {{u"outside/x"_s, "x"}}));
    QVERIFY(writeTree(m_run.temporaryFolder(),
                      {{u"kp-0123456789abcdef0123/main/x"_s, "x"},
                       {u"kp-0123456789abcdef0123.lock"_s, ""},
                       {u"kp-0123456789abcdef0124.lock"_s, ""}}));
    const QString folder = m_run.temporaryFolder() + u"/kp-0123456789abcdef012"_s;
    QVERIFY(QFile::link(m_run.path(u"outside"_s), folder + u"3/main/link"_s));
    QVERIFY(QFile::link(m_run.path(u"outside"_s), folder + u'4'));
    startWhile([&folder] { return QFile::exists(folder + u"3/main/x"_s); });
    QVERIFY(QFile::exists(folder + u'4')); // a link is not one of our folders
    QCOMPARE(contentOf(m_run.path(u"outside/x"_s)), QByteArray("x"));
}

void TestPredecessors::removesNoMoreThanSixteenAtOnce()
{
    for (int i = 0; i < 20; ++i) {
        const QString name = u"kp-%1"_s.arg(i, 20, 16, QChar(u'0'));
        QVERIFY(writeTree(m_run.temporaryFolder(),
                          {{name + u"/main/x"_s, "x"}, {name + u".lock"_s, ""}}));
    }
    QCOMPARE(m_run.run(m_file).exitCode, 7);
    const qsizetype left = m_run.leftovers().size();
    QVERIFY2(left >= 2 * (20 - 16), qPrintable(QString::number(left)));
    startUntilEmpty();
}

void TestPredecessors::stopsInTimeAndGoesOnLater()
{
    constexpr int files = 1000;
    // It is the first in the order: the time is over before another folder is looked at.
    const QString folder = m_run.temporaryFolder() + u"/kp-00000000000000000000"_s;
    QVERIFY(QDir().mkpath(folder));
    for (int i = 0; i < files; ++i) {
        QFile file(folder + u'/' + QString::number(i));
        QVERIFY(file.open(QIODevice::WriteOnly));
    }
    QVERIFY(QFile(folder + u".lock"_s).open(QIODevice::WriteOnly));
    const auto count = [&folder] {
        return QDir(folder).entryList(QDir::Files).size();
    };
    for (qsizetype before = files; before > 0; before = count()) {
        QCOMPARE(m_run.run(m_slow).exitCode, 7);
        QVERIFY2(count() < before, qPrintable(u"%1 left"_s.arg(count())));
        QVERIFY(before != files || count() > 0);
    }
    startUntilEmpty();
}

QTEST_GUILESS_MAIN(TestPredecessors)
#include "tst_predecessors.moc"
