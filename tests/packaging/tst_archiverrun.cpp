// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "packaging/archiverrun.h"

#include "packaging/archivercommand.h"
#include "platform/helperprocess.h"
#include "tests/fakes/fakeplatform.h"
#include "tests/fakes/privatetemp.h"
#include "tests/packaging/testreport.h"
#include "tests/support/builtfile.h"
#include "tests/support/knownpermissions.h"
#include "tests/support/onwindows.h"

#include <QTest>

class TestArchiverRun : public QObject
{
    Q_OBJECT

private:
    // One run of the archiver over the folder "/s" into the private temporary directory.
    struct Run
    {
        explicit Run(const PrivateTemp &temp)
            : job{"/s", temp.filePath("temp.7z"), "/o", "a.exe", {}, "5", "LZMA", "16M"}
        {
            process.setWorkingDirectory(temp.path());
            success = createArchive(job, process, report.report());
            events = report.events;
        }

        PackagingJob job;
        HelperProcess process;
        TestReport report;
        bool success = false;
        QStringList events;
    };

    static QString commandLine(const PrivateTemp &temp, const PackagingJob &job)
    {
        return "log 执行命令: " + temp.filePath("7zr.exe") + ' ' + archiverArguments(job).join(' ');
    }

    // On Windows, text on standard error also wakes the reader of standard output. It finds nothing
    // and logs an empty line.
    static QStringList withoutWakeUps(QStringList events)
    {
        if (onWindows) {
            events.removeAll("log ");
        }
        return events;
    }

private slots:
    void theWholeReportOfASuccess()
    {
        PrivateTemp temp;
        FakePlatform platform;
        temp.plantArchiver("print   37% 12 + a.bin\\n\nsleep 300\nprint   80% 14\\n");
        const Run run(temp);
        QVERIFY(run.success);
        QCOMPARE(run.events,
                 QStringList({commandLine(temp, run.job), "progress 37", "log 37% 12 + a.bin",
                              "progress 80", "log 80% 14", "log 压缩包创建成功"}));
    }

    void itGetsItsArgumentsOneByOneAndRunsInTheTemporaryDirectory()
    {
        PrivateTemp temp;
        FakePlatform platform;
        temp.plantArchiver("record arguments.txt\n");
        const Run run(temp);
        QVERIFY(run.success);
        QFile recorded(
            temp.filePath("arguments.txt")); // a relative name, so this tests the directory too
        QVERIFY(recorded.open(QIODevice::ReadOnly));
        QCOMPARE(QString::fromUtf8(recorded.readAll()),
                 archiverArguments(run.job).join('\n') + "\n\n");
    }

    void aChunkWithoutAPercentageIsStillALine()
    {
        PrivateTemp temp;
        FakePlatform platform;
        temp.plantArchiver("print \\n Scanning the drive \\n\n");
        const Run run(temp);
        QCOMPARE(run.events.mid(1), QStringList({"log Scanning the drive", "log 压缩包创建成功"}));
    }

    void aChunkOfBlanksIsAnEmptyLine()
    {
        PrivateTemp temp;
        FakePlatform platform;
        temp.plantArchiver("print \\n\\n\n");
        const Run run(temp);
        QCOMPARE(run.events.mid(1), QStringList({"log ", "log 压缩包创建成功"}));
    }

    void standardErrorOfASuccessIsNotReported()
    {
        PrivateTemp temp;
        FakePlatform platform;
        temp.plantArchiver("complain WARNING: odd\\n\n");
        const Run run(temp);
        QVERIFY(run.success);
        QCOMPARE(withoutWakeUps(run.events.mid(1)), QStringList{"log 压缩包创建成功"});
    }

    void aFailureShowsStandardErrorUntrimmed()
    {
        PrivateTemp temp;
        FakePlatform platform;
        temp.plantArchiver("complain \\nERROR: 磁盘已满\\n\nexit 2\n");
        const Run run(temp);
        QVERIFY(!run.success);
        QCOMPARE(withoutWakeUps(run.events.mid(1)),
                 QStringList{"log 7z错误输出: \nERROR: 磁盘已满\n"});
    }

    // Standard output that arrived together with the end is shown after the failure. Earlier output
    // is shown before it.
    void aFailureWithoutStandardErrorShowsWhatIsLeftOfStandardOutput()
    {
        PrivateTemp temp;
        FakePlatform platform;
        temp.plantArchiver("print all of it\nexit 7\n");
        const Run run(temp);
        QVERIFY(!run.success);
        const QString last = run.events.constLast();
        QVERIFY2(last.startsWith("log 7z错误输出: "), qUtf8Printable(last));
        const bool readBefore = run.events.contains("log all of it");
        QCOMPARE(last, readBefore ? "log 7z错误输出: " : "log 7z错误输出: all of it");
    }

    void aCrashIsAFailure()
    {
        PrivateTemp temp;
        FakePlatform platform;
        temp.plantArchiver("complain half\ncrash\n");
        const Run run(temp);
        QVERIFY(!run.success);
        QCOMPARE(run.events.constLast(), "log 7z错误输出: half");
    }

    void anArchiverThatIsNoProgramDoesNotStart()
    {
        PrivateTemp temp;
        FakePlatform platform;
        QFile broken(temp.filePath("7zr.exe"));
        QVERIFY(broken.open(QIODevice::WriteOnly) && broken.write("not a program") > 0);
        broken.close();
        broken.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
        const Run run(temp);
        QVERIFY(!run.success);
        QCOMPARE(run.events.size(), 3);
        QCOMPARE(run.events.at(1), "log 错误：无法启动7z.exe，路径: " + temp.filePath("7zr.exe"));
        QCOMPARE(run.events.at(2), "log 错误详情: " + run.process.errorString());
        QVERIFY(!run.process.errorString().isEmpty());
    }

    void anArchiverThatThePlatformRefusesDoesNotStart()
    {
        PrivateTemp temp;
        FakePlatform platform;
        platform.refusal = "somebody else's";
        temp.plantArchiver("record started.txt\n");
        const Run run(temp);
        QVERIFY(!run.success);
        QCOMPARE(run.events.mid(1),
                 QStringList({"log 错误：无法启动7z.exe，路径: " + temp.filePath("7zr.exe"),
                              "log 错误详情: somebody else's"}));
        QVERIFY(!QFile::exists(temp.filePath("started.txt")));
    }

    void withoutOneTheBundlesIsCopiedAndIsTheOwnersToRun()
    {
        PrivateTemp temp;
        FakePlatform platform;
        platform.refusal = "not here"; // only the copy is tested here
        const Run run(temp);
        QFile bundled(":/resources/7zr.exe");
        QFile copy(temp.filePath("7zr.exe"));
        QVERIFY(bundled.open(QIODevice::ReadOnly) && copy.open(QIODevice::ReadOnly));
        QVERIFY(bundled.size() > 0);
        QCOMPARE(copy.readAll(), bundled.readAll());
        constexpr auto owner = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner;
        constexpr auto others = QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup
            | QFile::ReadOther | QFile::WriteOther | QFile::ExeOther;
        QCOMPARE(known(copy.permissions() & (owner | others)), known(owner));
    }

    void oneThatIsThereIsNotTouched()
    {
        PrivateTemp temp;
        FakePlatform platform;
        temp.plantArchiver("exit 0\n");
        QFile planted(temp.filePath("7zr.exe"));
        constexpr auto unusual = QFile::ReadOwner | QFile::ExeOwner | QFile::ReadGroup;
        planted.setPermissions(unusual);
        const auto before = planted.permissions();
        const Run run(temp);
        QVERIFY(run.success);
        QCOMPARE(QFile(temp.filePath("7zr.exe")).permissions(), before);
        QCOMPARE(QFileInfo(temp.filePath("7zr.exe")).size(),
                 QFileInfo(builtFile(KESTRELPACK_FAKE_TOOL)).size());
    }

    void anArchiverThatCannotBeCopiedFails()
    {
        if (onWindows) {
            QSKIP(PrivateTemp::cannotBlockCopies);
        }
        PrivateTemp temp;
        FakePlatform platform;
        temp.blockCopyTo("7zr.exe");
        const Run run(temp);
        QVERIFY(!run.success);
        QCOMPARE(run.events, QStringList{"log 错误：无法复制7zr.exe到临时目录"});
    }
};

QTEST_GUILESS_MAIN(TestArchiverRun)
#include "tst_archiverrun.moc"
