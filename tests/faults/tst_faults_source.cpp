// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/faults/faultyjob.h"
#include "tests/support/onwindows.h"
#include "tests/support/testfiles.h"

#include <QProcess>
#include <QTest>

#include <atomic>
#include <thread>

// Faults of the folder while it is packed. Rows that the archiver must notice use the real
// archiver.
class TestFaultsSource : public QObject
{
    Q_OBJECT

private:
    // `spoil` runs right before the archiver starts, after the inputs were checked.
    static Fault archiverFails(const std::function<void(FaultyJob &)> &spoil, const QString &line,
                               const QString &temporary = "temp.7z", Rights rights = Rights::Own)
    {
        return {[spoil](FaultyJob &job) {
                    job.useRealArchiver();
                    spoil(job);
                },
                Ending::Failed,
                line,
                "the older my.exe",
                temporary,
                rights};
    }

    static Fault unreadable(const QString &name, uint permissions, const QString &line,
                            const QString &temporary = "temp.7z")
    {
        return archiverFails(
            [name, permissions](FaultyJob &job) {
                if (onWindows) {
                    job.skip("there are no such permissions here");
                }
                QFile::setPermissions(job.source(name), QFile::Permissions::fromInt(permissions));
            },
            line, temporary, Rights::Ordinary);
    }

private slots:
    void job_data()
    {
        QTest::addColumn<Fault>("fault");
        QTest::newRow("it vanishes before the archiver starts") << archiverFails(
            [](FaultyJob &job) {
                job.leaveOutOfComparison();
                job.atMoment("use 7zr.exe",
                             [&job] { QVERIFY(QDir(job.source()).removeRecursively()); });
            },
            "7z错误输出: ");
        QTest::newRow("the main program vanishes while the archiver works")
            << Fault{[](FaultyJob &job) {
                         job.platform.reset();
                         job.leaveOutOfComparison("my.tool.exe");
                         job.useArchiver("remove " + job.source("my.tool.exe").toUtf8());
                     },
                     Ending::Done, "警告：无法从EXE提取图标", "my.exe, whole", "temp.7z"};
        QTest::newRow("a file in it cannot be read")
            << unreadable("data/文件.txt", 0, "7z错误输出: ");
        QTest::newRow("the main program cannot be read")
            << unreadable("my.tool.exe", 0, "7z错误输出: ");
        QTest::newRow("a folder in it cannot be entered")
            << unreadable("data", 0x6000, "7z错误输出: ");
        QTest::newRow("a folder in it cannot be listed")
            << unreadable("data", 0x1000, "7z错误输出: ");
        QTest::newRow("it cannot be listed itself") << unreadable("", 0x1000, "7z错误输出: ");
        QTest::newRow("it cannot be entered itself")
            << Fault{[](FaultyJob &job) {
                         if (onWindows) {
                             job.skip("there are no such permissions here");
                         }
                         QFile::setPermissions(job.source(), QFile::ReadOwner);
                     },
                     Ending::Failed,
                     "错误：主程序不存在于源文件夹中",
                     "the older my.exe",
                     "nothing",
                     Rights::Ordinary};
        QTest::newRow("a link in it leads nowhere")
            << Fault{[](FaultyJob &job) {
                         job.useRealArchiver();
                         if (onWindows) {
                             job.skip("a link to nowhere is a shortcut file here");
                         }
                         QVERIFY(QFile::link(job.source("missing"), job.source("data/link")));
                     },
                     Ending::Done, "压缩包创建成功", "my.exe, whole", "temp.7z"};
        QTest::newRow("another program holds a file in it")
            << archiverFails([](FaultyJob &job) { job.hold(job.source("data/文件.txt")); },
                             "7z错误输出: ");
    }
    void job()
    {
        QFETCH(Fault, fault);
        FaultyJob job;
        job.check(fault);
    }

    // The archive is valid, whichever bytes the archiver reads.
    void changing_data()
    {
        QTest::addColumn<Fault>("fault");
        QTest::newRow("a file in it grows all the while")
            << Fault{[](FaultyJob &job) { job.useRealArchiver(); }, Ending::Done, "压缩包创建成功",
                     "my.exe, whole", "temp.7z"};
    }
    void changing()
    {
        if (onWindows) {
            QSKIP("who writes a file keeps the archiver from reading it here");
        }
        QFETCH(Fault, fault);
        FaultyJob job;
        const QString growing = job.source("data/growing.log");
        QVERIFY(writeFile(growing, QByteArray(2000000, 'g')));
        job.leaveOutOfComparison("data/growing.log");
        std::atomic<bool> ended = false;
        std::thread writer([&growing, &ended] {
            QFile file(growing);
            // Slower than the archiver reads. Otherwise it would never reach the end.
            while (!ended && file.open(QIODevice::Append)) {
                file.write(QByteArray(5000, 'w'));
                file.close();
                std::this_thread::sleep_for(std::chrono::milliseconds(2));
            }
        });
        job.check(fault);
        ended = true;
        writer.join();
        QVERIFY(QFileInfo(growing).size() > 2000000);
        QCOMPARE(QProcess::execute(job.temp.filePath("7zr.exe"),
                                   {"t", "-bso0", job.job.archivePath}),
                 0);
    }
};

QTEST_GUILESS_MAIN(TestFaultsSource)
#include "tst_faults_source.moc"
