// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/faults/faultyjob.h"
#include "tests/support/onwindows.h"

#include <QTest>

// Faults of the archiver, before and while it runs.
class TestFaultsArchiver : public QObject
{
    Q_OBJECT

private:
    static Fault doesNotStart(const std::function<void(FaultyJob &)> &spoil)
    {
        return {spoil, Ending::Failed, "错误：无法启动7z.exe，路径: ", "the older my.exe",
                "nothing"};
    }

    static Fault endsItself(const QByteArray &script, const QString &said)
    {
        return {[script](FaultyJob &job) { job.temp.plantArchiver(script); }, Ending::Failed,
                "7z错误输出: " + said, "the older my.exe", "temp.7z"};
    }

private slots:
    void job_data()
    {
        QTest::addColumn<Fault>("fault");
        QTest::newRow("it is missing: the bundle's is copied")
            << Fault{[](FaultyJob &job) { job.useRealArchiver(); }, Ending::Done, "压缩包创建成功",
                     "my.exe, whole", "temp.7z"};
        QTest::newRow("it is no program")
            << doesNotStart([](FaultyJob &job) { job.replaceHelper("7zr.exe", "not a program"); });
        QTest::newRow("it is empty")
            << doesNotStart([](FaultyJob &job) { job.replaceHelper("7zr.exe", ""); });
        QTest::newRow("it may not be executed") << doesNotStart([](FaultyJob &job) {
            QFile::setPermissions(job.temp.filePath("7zr.exe"),
                                  QFile::Permissions::fromInt(0x6000));
            if (onWindows) {
                job.skip("there is no permission to execute here");
            }
        });
        QTest::newRow("a folder has its name") << doesNotStart([](FaultyJob &job) {
            QVERIFY(QFile::remove(job.temp.filePath("7zr.exe")));
            QVERIFY(QDir(job.temp.path()).mkpath("7zr.exe"));
        });
        QTest::newRow("it crashes at its start")
            << Fault{[](FaultyJob &job) { job.temp.plantArchiver("crash\n"); }, Ending::Failed,
                     "7z错误输出: ", "the older my.exe", "nothing"};
        QTest::newRow("it crashes in the middle")
            << endsItself("print  40%\nwrite @3 700\ncomplain half\ncrash\n", "half");
        for (const int code : {1, 2, 7, 8, 255, 42}) {
            const QByteArray number = QByteArray::number(code);
            QTest::addRow("it makes an archive and ends with code %d", code)
                << endsItself("write @3 700\ncomplain said " + number + "\nexit " + number + "\n",
                              "said " + number);
        }
        QTest::newRow("it makes an archive and ends with code 0")
            << Fault{[](FaultyJob &job) { job.useArchiver("complain WARNING\n"); }, Ending::Done,
                     "压缩包创建成功", "my.exe, whole", "temp.7z"};
        QTest::newRow("it ends with code 0 and makes no archive")
            << Fault{[](FaultyJob &job) { job.temp.plantArchiver(""); }, Ending::Failed,
                     "错误：无法读取压缩包文件", "my.exe without an archive", "nothing"};
        QTest::newRow("it ends with code 0 and makes an empty archive")
            << Fault{[](FaultyJob &job) { job.temp.plantArchiver("write @3 0\n"); },
                     Ending::Unnoticed, "压缩包数据写入完成，共写入: 0 字节",
                     "my.exe without an archive", "temp.7z"};
        QTest::newRow("it prints 42% in two pieces: the second piece counts")
            << Fault{[](FaultyJob &job) { job.useArchiver("print  4\nsleep 300\nprint 2%\n"); },
                     Ending::Done, "progress 2", "my.exe, whole", "temp.7z"};
    }
    void job()
    {
        QFETCH(Fault, fault);
        FaultyJob job;
        job.check(fault);
    }

    void flood_data()
    {
        QTest::addColumn<Fault>("fault");
        QTest::addColumn<int>("memory"); // largest growth, in MiB
        QTest::newRow("it prints 100 MiB")
            << Fault{[](FaultyJob &job) { job.useArchiver("flood 100\n"); }, Ending::Done,
                     "12% 345 + a folder", "my.exe, whole", "temp.7z"}
            << 16;
        QTest::newRow("it complains 100 MiB and ends with code 0")
            << Fault{[](FaultyJob &job) { job.useArchiver("flood-error 100\n"); }, Ending::Done,
                     "压缩包创建成功", "my.exe, whole", "temp.7z"}
            << 16;
        QTest::newRow("it complains 100 MiB and ends with code 2")
            << Fault{[](FaultyJob &job) { job.temp.plantArchiver("flood-error 100\nexit 2\n"); },
                     Ending::Failed, "7z错误输出: ", "the older my.exe", "nothing"}
            << 16;
    }
    void flood()
    {
        QFETCH(Fault, fault);
        QFETCH(int, memory);
        FaultyJob job;
        forgetPeakOfMemory();
        const auto before = peakOfMemory();
        job.check(fault);
        const auto after = peakOfMemory();
        if (before && after) {
            QVERIFY2(*after - *before <= memory,
                     qPrintable(QStringLiteral("%1 MiB").arg(*after - *before)));
        }
    }
};

QTEST_GUILESS_MAIN(TestFaultsArchiver)
#include "tst_faults_archiver.moc"
