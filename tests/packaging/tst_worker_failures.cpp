// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/packaging/workerrun.h"
#include "tests/support/onwindows.h"

#include <QTest>

// Jobs that end before the archiver starts: the lines they log, and the steps they do not begin.
// tst_archiverrun, tst_outputassembly and the fault matrix (tests/faults) test later ends.
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
};

QTEST_GUILESS_MAIN(TestWorkerFailures)
#include "tst_worker_failures.moc"
