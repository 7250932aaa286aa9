// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/helpers/self-extractor/moduletest.h"

#include <QDir>
#include <QTest>

#include <csignal>

#include <sys/inotify.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

// Counts how often a file is opened.
class OpenCounter
{
public:
    explicit OpenCounter(const QString &file) : m_events(inotify_init())
    {
        m_isReady = inotify_add_watch(m_events, QFile::encodeName(file).constData(), IN_OPEN) >= 0;
    }
    OpenCounter(const OpenCounter &) = delete;
    OpenCounter &operator=(const OpenCounter &) = delete;
    ~OpenCounter() { close(m_events); }

    bool isReady() const { return m_isReady; }

    // Blocks until the file has been opened.
    bool waitForOpening() const
    {
        inotify_event event = {}; // without a name, since the file itself is watched
        return read(m_events, &event, sizeof event) == sizeof event;
    }

private:
    int m_events;
    bool m_isReady = false;
};

} // namespace

// A virus scanner holds the unpacked program for a moment, and the module tries again.
class TestHeldProgram : public ModuleTest
{
    Q_OBJECT

private slots:
    void startsAProgramThatWasHeld();
};

void TestHeldProgram::startsAProgramThatWasHeld()
{
    // The small files are unpacked at the same time as the program or after it; they give the holder
    // time.
    Tree tree{{u"main.exe"_s, ModuleRun::programBytes()}};
    for (int i = 0; i < 3000; ++i) {
        tree[u"files/%1.txt"_s.arg(i)] = QByteArray::number(i);
    }
    const QString file = m_run.assemble(tree, u"main.exe"_s);
    const auto holder = m_run.seizeProgram();
    const auto process = m_run.start(file);
    QVERIFY(!ModuleRun::waitForOutput(*holder, "held=1").isEmpty());
    const QString folder
        = QDir(m_run.temporaryFolder()).entryList({u"kp-*"_s}, QDir::Dirs).value(0);
    const OpenCounter opened(m_run.temporaryFolder() + u'/' + folder + u"/main/main.exe"_s);
    QVERIFY(opened.isReady());
    QVERIFY(opened.waitForOpening());
    QVERIFY(opened.waitForOpening());
    // The module's patience must not end while this test is slow.
    const QList<qint64> modules = m_run.moduleProcesses();
    for (const qint64 id : modules) {
        kill(static_cast<pid_t>(id), SIGSTOP);
    }
    ModuleRun::finish(*holder);
    for (const qint64 id : modules) {
        kill(static_cast<pid_t>(id), SIGCONT);
    }
    const Run result = ModuleRun::finish(*process);
    QCOMPARE(result.errors, QByteArray());
    QCOMPARE(result.exitCode, 7);
}

QTEST_GUILESS_MAIN(TestHeldProgram)
#include "tst_heldprogram.moc"
