// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/faults/faultyjob.h"
#include "tests/faults/rownotes.h"
#include "tests/support/builtfile.h"
#include "tests/support/onwindows.h"
#include "tests/support/waiting.h"

#include <QProcess>
#include <QTest>

#ifdef Q_OS_LINUX
#include <csignal>
#endif

namespace {

const QByteArray waitToBeKilled = "print at the marker\nwrite marker 1\nsleep 900000\n";

} // namespace

// Kills the program during a job, so it cannot clean up. Source folder and older output must not
// change. The next job must succeed and remove everything that the first one left.
class TestFaultsKill : public QObject
{
    Q_OBJECT

private:
    static void add(const char *name, const QString &moment, const QString &output,
                    const QString &temporary, int which = 1)
    {
        QTest::newRow(name) << moment << which << QByteArray() << QByteArray() << output
                            << temporary;
    }

    static void addHelper(const char *name, const QByteArray &archiver, const QByteArray &editor,
                          const QString &output, const QString &temporary)
    {
        QTest::newRow(name) << "(a helper)" << 1 << archiver << editor << output << temporary;
    }

#ifdef Q_OS_LINUX
    static QList<pid_t> childrenOf(qint64 id)
    {
        QList<pid_t> children;
        QFile file(QStringLiteral("/proc/%1/task/%1/children").arg(id));
        if (file.open(QIODevice::ReadOnly)) {
            for (const QByteArray &child : file.readAll().simplified().split(' ')) {
                children << child.toInt();
            }
        }
        return children;
    }
#endif

private slots:
    void killed_data()
    {
        QTest::addColumn<QString>("moment");
        QTest::addColumn<int>("which");
        QTest::addColumn<QByteArray>("archiver");
        QTest::addColumn<QByteArray>("editor");
        QTest::addColumn<QString>("output");
        QTest::addColumn<QString>("temporary");
        const QString older = "the older my.exe";
        const QString archive = "temp.7z";
        const QString cut = "my.exe, cut short";
        const QString start = "my.exe without an archive";
        const QString whole = "my.exe, whole";
        const QString withBackup = "my.exe, whole, my.exe.bak";
        const QString scratch = "temp.7z, temp_icon.ico";
        add("before the inputs are checked", "log 开始创建便携应用...", older, "nothing");
        add("after the inputs are named", "log 输出目录: ", older, "nothing");
        add("before the archiver starts", "use 7zr.exe", older, "nothing");
        addHelper("before the archive is begun", waitToBeKilled, {}, older, "nothing");
        addHelper("in the middle of the archive", "write @3 700\n" + waitToBeKilled, {}, older,
                  archive);
        add("when the archive is there", "log 压缩包创建成功", older, archive);
        add("when the output is open", "use 7zS2.sfx", "an empty my.exe", archive);
        add("when the module is written", "log SFX模块写入成功", cut, archive);
        add("when the block is written", "log 配置数据写入成功", start, archive);
        add("when the block is shown", "log 配置内容:", start, archive);
        add("before the first piece of the archive", "log 准备写入压缩包数据", start, archive);
        add("after the first piece of the archive", "progress 84", cut, archive);
        add("after the last piece of the archive", "progress 100", whole, archive);
        add("when the output is closed", "log 尝试从主程序提取图标...", whole, archive);
        add("before the icon is taken", "extract", whole, archive);
        add("before the backup is made", "log 开始替换EXE图标...", whole, archive);
        add("before the editor's first run", "use ResourceHacker.exe", withBackup, scratch);
        addHelper("in the editor's first run", {}, "unless addoverwrite\n" + waitToBeKilled,
                  withBackup, scratch);
        add("before the editor's second run", "use ResourceHacker.exe", withBackup, scratch, 2);
        addHelper("in the editor's second run, with half of the file written", {},
                  "if addoverwrite\nwrite @2 1000\n" + waitToBeKilled,
                  "my.exe with other content, my.exe.bak", scratch);
        add("before the icon cache is refreshed", "detached", withBackup, scratch);
        add("in the first pause", "pause", withBackup, scratch);
        add("in the second pause", "pause", withBackup, scratch, 2);
        add("in the third pause", "pause", withBackup, scratch, 3);
        add("before the shell is told", "shell told", withBackup, scratch);
        add("when the icon is set", "log 图标替换成功！", whole, archive);
        add("in the last pause", "pause", whole, archive, 4);
        add("when the success is told", "log 成功创建便携应用！", whole, archive);
        add("before the end", "progress 100", whole, archive, 2);
    }
    void killed()
    {
        QFETCH(QString, moment);
        QFETCH(int, which);
        QFETCH(QByteArray, archiver);
        QFETCH(QByteArray, editor);
        QFETCH(QString, output);
        QFETCH(QString, temporary);
        const bool inHelper = moment == "(a helper)";
        if (onWindows && inHelper) {
            QSKIP("a helper outlives its job here");
        }
        FaultyJob job;
        const QString marker = job.folders.filePath("marker");
        job.useArchiver(QByteArray(archiver).replace(" marker 1", ' ' + marker.toUtf8() + " 1"));
        job.temp.plantEditor(QByteArray(editor).replace(" marker 1", ' ' + marker.toUtf8() + " 1"));
        const QStringList before = job.sourceState();

        QProcess process;
        process.start(builtFile(KESTRELPACK_KILLED_JOB),
                      {moment, QString::number(which), job.job.folderPath, job.job.archivePath,
                       job.job.outputDir});
        QVERIFY(process.waitForStarted(patience));
        QByteArray said;
        WAIT_VERIFY((process.waitForReadyRead(5), said += process.readAll(),
                     inHelper ? QFile::exists(marker) : said.contains("here")));
        QCOMPARE(process.state(), QProcess::Running);
        killWithHelpers(process);

        QCOMPARE(job.leftInOutput(), output);
        QCOMPARE(job.leftInTemporary(), temporary);
        QCOMPARE(job.sourceState(), before);
        noteResult({"is killed", "(nothing more)", output, temporary});

        job.useArchiver("");
        job.temp.plantEditor("");
        job.run();
        QVERIFY(job.success);
        QCOMPARE(job.leftInOutput(), "my.exe, whole");
        QCOMPARE(job.leftInTemporary(), "temp.7z");
        QCOMPARE(job.sourceState(), before);
    }

private:
    static void killWithHelpers(QProcess &process)
    {
#ifdef Q_OS_LINUX
        const QList<pid_t> helpers = childrenOf(process.processId());
#endif
        process.kill();
        QVERIFY(process.waitForFinished(patience));
        QCOMPARE(process.exitStatus(), QProcess::CrashExit);
#ifdef Q_OS_LINUX
        for (const pid_t helper : helpers) {
            WAIT_VERIFY(helper <= 0 || kill(helper, 0) != 0);
        }
#endif
    }
};

QTEST_GUILESS_MAIN(TestFaultsKill)
#include "tst_faults_kill.moc"
