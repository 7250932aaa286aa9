// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/faults/faultyjob.h"
#include "tests/support/onwindows.h"
#include "tests/support/testfiles.h"
#include "tests/support/testicons.h"

#include <QRandomGenerator>
#include <QTest>

// Faults of the temporary directory: of the directory, and of files that others put into it.
class TestFaultsTemporary : public QObject
{
    Q_OBJECT

private:
    static Fault noArchiver(const std::function<void(FaultyJob &)> &spoil, const QString &temporary,
                            Rights rights = Rights::Own)
    {
        return {spoil,     Ending::Failed, "错误：无法复制7zr.exe到临时目录", "the older my.exe",
                temporary, rights};
    }

    // The helpers exist and work, but the ones in `helpers` belong to another user. The temporary
    // directory has the permissions `directory`.
    static void addPlanted(const char *name, const QStringList &helpers, uint directory,
                           Fault fault)
    {
        fault.spoil = [helpers, directory](FaultyJob &job) {
            job.platform.reset();
            job.job.iconPath = job.folders.filePath("user.ico");
            QVERIFY(writeFile(job.job.iconPath, icoBytes(32, 32)));
            if (onWindows) {
                job.skip("a program under Wine cannot give files away");
            }
            for (const QString &helper : helpers) {
                if (!giveAway(job.temp.filePath(helper))) {
                    job.skip("only root can give files away");
                }
            }
            QFile::setPermissions(job.temp.path(), QFile::Permissions::fromInt(directory));
        };
        QTest::newRow(name) << fault;
    }

private slots:
    void place_data()
    {
        QTest::addColumn<Fault>("fault");
        // Qt then returns the root folder instead, where only root may write.
        QTest::newRow("it is missing") << noArchiver(
            [](FaultyJob &job) { QVERIFY(QDir(job.temp.path()).removeRecursively()); }, "nothing",
            Rights::Ordinary);
        QTest::newRow("it may not be written") << noArchiver(
            [](FaultyJob &job) {
                if (onWindows) {
                    job.skip("there are no such permissions here");
                }
                job.useRealArchiver();
                QFile::setPermissions(job.temp.path(), QFile::ReadOwner | QFile::ExeOwner);
            },
            "nothing", Rights::Ordinary);
        QTest::newRow("it has no room for the archiver")
            << noArchiver([](FaultyJob &job) { job.putOnSmallDisk(job.temp.path(), 64); },
                          "nothing");
        QTest::newRow("it has no room for the archive")
            << Fault{[](FaultyJob &job) {
                         job.putOnSmallDisk(job.temp.path(), 4000);
                         QByteArray random(4000000, Qt::Uninitialized);
                         for (char &byte : random) {
                             byte
                                 = static_cast<char>(QRandomGenerator::global()->generate() & 0xFF);
                         }
                         QVERIFY(writeFile(job.source("random"), random));
                     },
                     Ending::Failed, "7z错误输出: ", "the older my.exe", "nothing"};
        QTest::newRow("it has no room for the module")
            << Fault{[](FaultyJob &job) {
                         job.putOnSmallDisk(job.temp.path(), 4000);
                         job.temp.plantArchiver("write @3 4000000\n");
                     },
                     Ending::Failed, "错误：无法复制SFX模块", "the older my.exe", "temp.7z"};
        QTest::newRow("it has no room for the icon: the executable gets none")
            << Fault{[](FaultyJob &job) {
                         job.putOnSmallDisk(job.temp.path(), 4000);
                         job.temp.plantModule("module");
                         job.temp.plantEditor("");
                         job.temp.plantArchiver("write @3 4000000\n");
                     },
                     Ending::Done, "图标替换完成，已强制更新图标缓存", "my.exe, whole", "temp.7z"};
        QTest::newRow("a folder has the archive's name")
            << Fault{[](FaultyJob &job) {
                         job.useRealArchiver();
                         QVERIFY(QDir(job.temp.path()).mkpath("temp.7z"));
                     },
                     Ending::Failed, "7z错误输出: ", "the older my.exe", "temp.7z"};
        QTest::newRow("an archive of an earlier job lies there")
            << Fault{[](FaultyJob &job) {
                         job.useRealArchiver();
                         QVERIFY(writeFile(job.temp.filePath("temp.7z"), "half an archive"));
                     },
                     Ending::Failed, "7z错误输出: ", "the older my.exe", "temp.7z"};
    }
    void place()
    {
        QFETCH(Fault, fault);
        FaultyJob job;
        job.check(fault);
    }

    void planted_data()
    {
        QTest::addColumn<Fault>("fault");
        constexpr uint shared = 0x7077;
        constexpr uint usersOwn = 0x7055;
        addPlanted(
            "an archiver of another user, where others may write", {"7zr.exe"}, shared,
            {{}, Ending::Failed, "错误：无法启动7z.exe，路径: ", "the older my.exe", "nothing"});
        addPlanted("a module of another user, where others may write", {"7zS2.sfx"}, shared,
                   {{}, Ending::Failed, "错误：无法读取SFX模块", "an empty my.exe", "temp.7z"});
        addPlanted("an editor of another user, where others may write", {"ResourceHacker.exe"},
                   shared,
                   {{},
                    Ending::Done,
                    "错误：ResourceHacker添加新图标失败\n警告：图标替换失败",
                    "my.exe, whole",
                    "temp.7z"});
        addPlanted("all helpers of another user, where only the user may write",
                   {"7zr.exe", "7zS2.sfx", "ResourceHacker.exe"}, usersOwn,
                   {{}, Ending::Done, "图标替换成功！", "my.exe, whole", "temp.7z"});
    }
    void planted()
    {
        QFETCH(Fault, fault);
        FaultyJob job;
        job.check(fault);
    }
};

QTEST_GUILESS_MAIN(TestFaultsTemporary)
#include "tst_faults_temporary.moc"
