// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/faults/faultyjob.h"
#include "tests/support/builtfile.h"
#include "tests/support/onwindows.h"
#include "tests/support/testfiles.h"
#include "tests/support/waiting.h"

#include <QProcess>
#include <QTest>

// Faults of the output directory and of the file in it. The engine does not check whether its
// writes succeed: only the sizes show a full disk.
class TestFaultsOutput : public QObject
{
    Q_OBJECT

private:
    static Fault cannotBeMade(const std::function<void(FaultyJob &)> &spoil, const QString &left,
                              Rights rights = Rights::Own)
    {
        return {spoil, Ending::Failed, "错误：无法创建输出文件: ", left, "temp.7z", rights};
    }

    static void vanishAt(FaultyJob &job, const QString &moment)
    {
        job.atMoment(moment, [&job] { QVERIFY(QDir(job.job.outputDir).removeRecursively()); });
    }

private slots:
    void job_data()
    {
        QTest::addColumn<Fault>("fault");
        QTest::newRow("the directory vanishes while the archiver works")
            << cannotBeMade([](FaultyJob &job) { vanishAt(job, "use 7zr.exe"); }, "nothing");
        QTest::newRow("the directory vanishes before the icon is set")
            << Fault{[](FaultyJob &job) { vanishAt(job, "extract"); }, Ending::Failed,
                     "错误：无法创建备份文件\n警告：图标替换失败\n创建单文件失败", "nothing",
                     "temp.7z"};
        QTest::newRow("the directory vanishes while the icon is set")
            << Fault{[](FaultyJob &job) { vanishAt(job, "pause"); }, Ending::Failed,
                     "创建单文件失败", "nothing", "temp.7z"};
        QTest::newRow("the directory is a file") << cannotBeMade(
            [](FaultyJob &job) {
                QVERIFY(QDir(job.job.outputDir).removeRecursively());
                QVERIFY(writeFile(job.job.outputDir, "a file"));
            },
            "no directory");
        QTest::newRow("the directory may not be written") << cannotBeMade(
            [](FaultyJob &job) {
                if (onWindows) {
                    job.skip("there are no such permissions here");
                }
                QVERIFY(QFile::remove(job.output()));
                QFile::setPermissions(job.job.outputDir, QFile::ReadOwner | QFile::ExeOwner);
            },
            "nothing", Rights::Ordinary);
        QTest::newRow("the older output may not be written") << cannotBeMade(
            [](FaultyJob &job) {
                if (onWindows) {
                    job.skip("Wine lets root write everything");
                }
                QFile::setPermissions(job.output(), QFile::ReadOwner);
            },
            "the older my.exe", Rights::Ordinary);
        QTest::newRow("another program reads the older output")
            << Fault{[](FaultyJob &job) {
                         static std::unique_ptr<QFile> file;
                         file = std::make_unique<QFile>(job.output());
                         QVERIFY(file->open(QIODevice::ReadOnly));
                     },
                     Ending::Done, "SFX模块写入成功", "my.exe, whole", "temp.7z"};
        QTest::newRow("another program holds the older output")
            << cannotBeMade([](FaultyJob &job) { job.hold(job.output()); }, "the older my.exe");
        QTest::newRow("the disk is full before the output begins")
            << Fault{[](FaultyJob &job) {
                         job.putOnSmallDisk(job.job.outputDir, 64);
                         writeFile(job.output("other"), QByteArray(100000, 'x'));
                     },
                     Ending::Unnoticed, "共写入: -2 字节", "an empty my.exe, other", "temp.7z"};
        QTest::newRow("the disk is full in the middle of the output")
            << Fault{[](FaultyJob &job) { job.putOnSmallDisk(job.job.outputDir, 1200); },
                     Ending::Unnoticed,
                     "错误：无法创建备份文件\n警告：图标替换失败\n成功创建便携应用！",
                     "my.exe, cut short", "temp.7z"};
        QTest::newRow("the disk has room for the output but not for its backup")
            << Fault{[](FaultyJob &job) { job.putOnSmallDisk(job.job.outputDir, 2000); },
                     Ending::Done, "错误：无法创建备份文件\n警告：图标替换失败\n成功创建便携应用！",
                     "my.exe, whole", "temp.7z"};
    }
    void job()
    {
        QFETCH(Fault, fault);
        FaultyJob job;
        job.check(fault);
    }

    void running_data()
    {
        QTest::addColumn<Fault>("fault");
        QTest::newRow("the older output is running")
            << cannotBeMade([](FaultyJob &) {}, "the older my.exe");
    }
    void running()
    {
        QFETCH(Fault, fault);
        FaultyJob job;
        QVERIFY(QFile::remove(job.output())
                && QFile::copy(builtFile(KESTRELPACK_FAKE_TOOL), job.output()));
        job.older = readFile(builtFile(KESTRELPACK_FAKE_TOOL));
        qputenv("FAKE_MY", "sleep 900000\n");
        const auto forget = qScopeGuard([] { qunsetenv("FAKE_MY"); });
        QProcess older;
        older.start(job.output(), QStringList());
        QVERIFY(older.waitForStarted(patience));
        job.check(fault);
        QCOMPARE(older.state(), QProcess::Running);
        older.kill();
        QVERIFY(older.waitForFinished(patience));
    }
};

QTEST_GUILESS_MAIN(TestFaultsOutput)
#include "tst_faults_output.moc"
