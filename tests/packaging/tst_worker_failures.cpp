// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/packaging/workerrun.h"

#include <QTest>

// Runs that end early: what they say until then, and what they have not begun.
class TestWorkerFailures : public QObject
{
    Q_OBJECT

private slots:
    void aMissingSourceFolderStartsNothing()
    {
        Surroundings s;
        s.job.folderPath = s.temp.filePath("missing");
        s.temp.plantArchiver("record started.txt\n");
        QCOMPARE(s.run(),
                 beginning(s) + QStringList({"log 错误：源文件夹不存在", "finished false"}));
        QVERIFY(!QFile::exists(s.temp.filePath("started.txt")));
    }

    void aSourceFolderThatIsAFileIsMissing()
    {
        Surroundings s;
        s.job.folderPath = s.temp.filePath("source/my.tool.exe");
        QCOMPARE(s.run(),
                 beginning(s) + QStringList({"log 错误：源文件夹不存在", "finished false"}));
    }

    void aMissingMainProgramStartsNothing()
    {
        Surroundings s;
        s.job.mainExeName = "other.exe";
        s.temp.plantArchiver("record started.txt\n");
        QCOMPARE(s.run(),
                 beginning(s)
                     + QStringList({"log 错误：主程序不存在于源文件夹中", "finished false"}));
        QVERIFY(!QFile::exists(s.temp.filePath("started.txt")));
    }

    void anArchiverThatCannotBeCopiedEndsTheRun()
    {
        if (onWindows) {
            QSKIP(PrivateTemp::cannotBlockCopies);
        }
        Surroundings s;
        s.temp.blockCopyTo("7zr.exe");
        QCOMPARE(s.run(),
                 beginning(s)
                     + QStringList({"log 错误：无法复制7zr.exe到临时目录", "finished false"}));
    }

    void anArchiverThatDoesNotStartEndsTheRun()
    {
        Surroundings s;
        s.platform.refusal = "not this one";
        QCOMPARE(s.run(),
                 beginning(s) + command(s)
                     + QStringList({"log 错误：无法启动7z.exe，路径: " + s.temp.filePath("7zr.exe"),
                                    "log 错误详情: not this one", "finished false"}));
    }

    void anArchiverThatFailsEndsTheRun()
    {
        Surroundings s;
        s.temp.plantArchiver("complain no room\nexit 8\n");
        QStringList events = s.run();
        if (onWindows) {
            events.removeAll("log "); // standard error wakes the reader of standard output
        }
        QCOMPARE(events,
                 beginning(s) + command(s)
                     + QStringList({"log 7z错误输出: no room", "finished false"}));
        QVERIFY(!QFile::exists(s.output()));
    }

    void aModuleThatCannotBeCopiedEndsTheRun()
    {
        if (onWindows) {
            QSKIP(PrivateTemp::cannotBlockCopies);
        }
        Surroundings s;
        s.temp.blockCopyTo("7zS2.sfx");
        QCOMPARE(s.run(),
                 archived(s) + QStringList({"log 错误：无法复制SFX模块", "finished false"}));
    }

    void anOutputThatCannotBeCreatedEndsTheRun()
    {
        Surroundings s;
        QVERIFY(QDir(s.temp.filePath("output")).mkpath("my.exe"));
        QCOMPARE(s.run(),
                 archived(s)
                     + QStringList(
                         {"log 错误：无法创建输出文件: " + s.output(), "finished false"}));
    }

    void aModuleThatCannotBeReadEndsTheRun()
    {
        Surroundings s;
        s.platform.refusal = "not this one";
        s.platform.refusedPath = s.temp.filePath("7zS2.sfx");
        QCOMPARE(s.run(),
                 archived(s) + QStringList({"log 错误：无法读取SFX模块", "finished false"}));
    }

    void anArchiveThatIsMissingEndsTheRun()
    {
        Surroundings s;
        s.temp.plantArchiver("print  40%\n");
        QCOMPARE(s.run(),
                 archived(s) + moduleAndBlock()
                     + QStringList({"log 错误：无法读取压缩包文件", "finished false"}));
        QVERIFY(QFile::exists(s.output()));
    }

    void anOutputThatIsGoneAtTheEndIsAFailure()
    {
        Surroundings s;
        s.temp.plantEditor("if addoverwrite\nremove @2\n");
        QCOMPARE(s.run(),
                 assembled(s) + extracted() + replaced()
                     + QStringList({"log 创建单文件失败", "finished false"}));
    }
};

QTEST_GUILESS_MAIN(TestWorkerFailures)
#include "tst_worker_failures.moc"
