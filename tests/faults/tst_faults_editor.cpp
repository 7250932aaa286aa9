// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/faults/faultyjob.h"

#include <QTest>

// Faults of the module and of the resource editor. The engine only waits for the editor's end and
// does not check how it ended.
class TestFaultsEditor : public QObject
{
    Q_OBJECT

private:
    static Fault replaced(const std::function<void(FaultyJob &)> &spoil, Ending ending,
                          const QString &output)
    {
        return {spoil, ending, "图标替换完成，已强制更新图标缓存", output, "temp.7z"};
    }

    static Fault notReplaced(const std::function<void(FaultyJob &)> &spoil)
    {
        return {spoil, Ending::Done, "错误：ResourceHacker添加新图标失败\n警告：图标替换失败",
                "my.exe, whole", "temp.7z"};
    }

private slots:
    void module_data()
    {
        QTest::addColumn<Fault>("fault");
        const QString line = "SFX模块写入成功";
        const QString other = "my.exe with other content";
        QTest::newRow("the module is damaged")
            << Fault{[](FaultyJob &job) { job.temp.plantModule("modul!"); }, Ending::Unnoticed,
                     line, other, "temp.7z"};
        QTest::newRow("the module is empty")
            << Fault{[](FaultyJob &job) { job.temp.plantModule(""); }, Ending::Unnoticed, line,
                     other, "temp.7z"};
        QTest::newRow("the module is damaged and the editor is the real one") << replaced(
            [](FaultyJob &job) {
                job.temp.plantModule("modul!");
                QVERIFY(QFile::remove(job.temp.filePath("ResourceHacker.exe")));
            },
            Ending::Unnoticed, other);
        QTest::newRow("a folder has the module's name")
            << Fault{[](FaultyJob &job) {
                         QVERIFY(QFile::remove(job.temp.filePath("7zS2.sfx")));
                         QVERIFY(QDir(job.temp.path()).mkpath("7zS2.sfx"));
                     },
                     Ending::Failed, "错误：无法读取SFX模块", "an empty my.exe", "temp.7z"};
        QTest::newRow("the module vanishes before it is read")
            << Fault{[](FaultyJob &job) {
                         job.atMoment("use 7zS2.sfx", [&job] {
                             QVERIFY(QFile::remove(job.temp.filePath("7zS2.sfx")));
                         });
                     },
                     Ending::Failed, "错误：无法读取SFX模块", "an empty my.exe", "temp.7z"};
    }
    void module()
    {
        QFETCH(Fault, fault);
        FaultyJob job;
        job.check(fault);
    }

    void editor_data()
    {
        QTest::addColumn<Fault>("fault");
        const QString editor = "ResourceHacker.exe";
        QTest::newRow("the editor is missing: the bundle's is copied") << replaced(
            [editor](FaultyJob &job) {
                QVERIFY(QFile::remove(job.temp.filePath(editor)));
                job.temp.plantModule("module");
            },
            Ending::Done, "my.exe, whole");
        QTest::newRow("the editor is no program") << notReplaced(
            [editor](FaultyJob &job) { job.replaceHelper(editor, "not a program"); });
        QTest::newRow("a folder has the editor's name") << notReplaced([editor](FaultyJob &job) {
            QVERIFY(QFile::remove(job.temp.filePath(editor)));
            QVERIFY(QDir(job.temp.path()).mkpath(editor));
        });
        QTest::newRow("the editor crashes at once")
            << replaced([](FaultyJob &job) { job.temp.plantEditor("crash\n"); }, Ending::Done,
                        "my.exe, whole");
        QTest::newRow("the editor crashes and leaves half of the file") << replaced(
            [](FaultyJob &job) { job.temp.plantEditor("if addoverwrite\nwrite @2 1000\ncrash\n"); },
            Ending::Unnoticed, "my.exe with other content");
        QTest::newRow("the editor leaves half of the file and ends with code 1") << replaced(
            [](FaultyJob &job) {
                job.temp.plantEditor("if addoverwrite\nwrite @2 1000\nexit 1\n");
            },
            Ending::Unnoticed, "my.exe with other content");
        QTest::newRow("the editor hangs in the middle of the file, and is ended")
            << Fault{[](FaultyJob &job) {
                         job.temp.plantEditor("if addoverwrite\nwrite @2 1000\nsleep 900000\n");
                     },
                     Ending::Unnoticed, "错误：ResourceHacker添加新图标失败\n警告：图标替换失败",
                     "my.exe with other content", "temp.7z"};
        QTest::newRow("the editor removes the file")
            << Fault{[](FaultyJob &job) { job.temp.plantEditor("if addoverwrite\nremove @2\n"); },
                     Ending::Failed, "图标替换成功！\n创建单文件失败", "nothing", "temp.7z"};
        QTest::newRow("the editor vanishes after its first run") << notReplaced([](FaultyJob &job) {
            const QString path = job.temp.filePath("ResourceHacker.exe");
            job.platform->before = [path, uses = 0](const QString &moment) mutable {
                if (moment == "use ResourceHacker.exe" && ++uses == 2) {
                    QVERIFY(QFile::remove(path));
                }
            };
        });
    }
    void editor()
    {
        QFETCH(Fault, fault);
        FaultyJob job;
        job.check(fault);
    }
};

QTEST_GUILESS_MAIN(TestFaultsEditor)
#include "tst_faults_editor.moc"
