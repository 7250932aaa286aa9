// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "packaging/worker.h"

#include "packaging/archivercommand.h"
#include "packaging/configurationblock.h"
#include "packaging/packagingjob.h"
#include "tests/fakes/fakeplatform.h"
#include "tests/fakes/privatetemp.h"
#include "tests/fakes/testfiles.h"
#include "tests/fakes/testicons.h"
#include "tests/packaging/signalrecorder.h"

#include <QMetaMethod>
#include <QTest>
#include <QThread>

namespace {

const QByteArray workingArchiver = "print  40%\nwrite @3 1500000\n";
const QByteArray workingEditor = "record editor.txt\n";
constexpr int archiveSize = 1500000;

} // namespace

// Whole runs with fake helpers, every signal in order. The worker lives in the test's thread.
class TestWorker : public QObject
{
    Q_OBJECT

private:
    // A folder with a program, an output directory, and helpers that work; a test spoils what it is
    // about.
    struct Surroundings
    {
        Surroundings()
        {
            const QDir dir(temp.path());
            if (!dir.mkpath("source") || !dir.mkpath("output")
                || !writeFile(temp.filePath("source/my.tool.exe"), "program")) {
                qFatal("the surroundings could not be made");
            }
            temp.plantModule("module");
            temp.plantArchiver(workingArchiver);
            temp.plantEditor(workingEditor);
            platform.icon = extractedIcon(32, 32);
            job = {temp.filePath("source"),
                   temp.filePath("temp.7z"),
                   temp.filePath("output"),
                   "my.tool.exe",
                   {},
                   "5",
                   "LZMA",
                   "16M"};
        }

        QStringList run()
        {
            Worker worker;
            SignalRecorder recorder(worker);
            worker.createPortableApp(job.folderPath, job.archivePath, job.outputDir,
                                     job.mainExeName, job.iconPath, job.compressionLevel,
                                     job.compressionMethod, job.dictionarySize);
            return recorder.signalsSeen;
        }

        QString output() const { return temp.filePath("output/my.exe"); }

        PrivateTemp temp;
        FakePlatform platform;
        PackagingJob job;
    };

    // The parts that the sequences are put together from.
    static QStringList beginning(const Surroundings &s)
    {
        return {"log 开始创建便携应用...", "log 源文件夹: " + s.job.folderPath,
                "log 主程序: " + s.job.mainExeName, "log 输出目录: " + s.job.outputDir};
    }
    static QStringList command(const Surroundings &s)
    {
        return {"log 执行命令: " + s.temp.filePath("7zr.exe") + ' '
                + archiverArguments(s.job).join(' ')};
    }
    static QStringList archived(const Surroundings &s)
    {
        return beginning(s) + command(s)
            + QStringList({"progress 40", "log 40%", "log 压缩包创建成功"});
    }
    static QStringList moduleAndBlock()
    {
        const QString block = configurationBlock("my", "my.tool.exe");
        return {"log SFX模块写入成功",
                QStringLiteral("log 配置数据写入成功，大小: %1 字节").arg(block.toUtf8().size()),
                "log 配置内容:\n" + block};
    }
    static QStringList assembled(const Surroundings &s)
    {
        return archived(s) + moduleAndBlock()
            + QStringList({"log 准备写入压缩包数据，大小: 1500000 字节", "progress 84",
                           "progress 100", "log 压缩包数据写入完成，共写入: 1500000 字节"});
    }
    static QStringList extracted()
    {
        const auto size = icoBytes(256, 256).size();
        return {"log 尝试从主程序提取图标...",
                QStringLiteral("log 成功提取图标，大小: %1 字节").arg(size),
                "log 图标验证通过 - 尺寸: 256x256", "log 成功从主程序提取图标"};
    }
    static QStringList replaced()
    {
        return {"log 开始替换EXE图标...", "log 警告：无法从EXE加载图标，可能需要重启资源管理器",
                "log 图标替换完成，已强制更新图标缓存", "log 图标替换成功！"};
    }
    static QStringList done()
    {
        const auto size = 6 + configurationBlock("my", "my.tool.exe").toUtf8().size() + archiveSize;
        return {"log 成功创建便携应用！", QStringLiteral("log 最终文件大小: %1 字节").arg(size),
                "progress 100", "finished true"};
    }

    static QStringList allPauses()
    {
        return {"detached: ie4uinit.exe -ClearIconCache",
                "pause: 500 ms",
                "detached: ie4uinit.exe -show",
                "pause: 500 ms",
                "detached: taskkill /F /IM explorer.exe & start explorer.exe",
                "pause: 1000 ms",
                "shell told",
                "pause: 1000 ms"};
    }

private slots:
    void metaObject()
    {
        const QMetaObject &meta = Worker::staticMetaObject;
        QCOMPARE(QByteArray(meta.className()), QByteArray("Worker"));
        QStringList methods;
        for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
            const QMetaMethod method = meta.method(i);
            const QByteArray kind = method.methodType() == QMetaMethod::Signal ? "signal "
                                                                               : "slot ";
            methods << kind + method.methodSignature() + ' ' + method.parameterNames().join(',');
        }
        const QStringList expected{
            "signal progressChanged(int) value", "signal logMessage(QString) message",
            "signal finished(bool) success",
            "slot createPortableApp(QString,QString,QString,QString,QString,QString,QString,QString) "
            "folderPath,archivePath,outputDir,mainExeName,iconPath,compressionLevel,"
            "compressionMethod,dictionarySize"};
        QCOMPARE(methods, expected);
    }

    void runWithTheProgramsOwnIcon()
    {
        Surroundings s;
        QCOMPARE(s.run(), assembled(s) + extracted() + replaced() + done());
        QCOMPARE(s.platform.events, allPauses());
        QCOMPARE(s.platform.extractedFrom, s.temp.filePath("source/my.tool.exe"));
    }

    void runWithTheUsersIcon()
    {
        Surroundings s;
        s.job.iconPath = s.temp.filePath("user.ico");
        QVERIFY(writeFile(s.job.iconPath, icoBytes(48, 48)));
        QCOMPARE(s.run(),
                 assembled(s)
                     + QStringList({"log 图标验证通过 - 尺寸: 48x48", "log 使用用户提供的图标文件"})
                     + replaced() + done());
        QVERIFY(s.platform.extractedFrom.isEmpty());
    }

    void runWithABadUserIcon()
    {
        Surroundings s;
        s.job.iconPath = s.temp.filePath("user.ico");
        QVERIFY(writeFile(s.job.iconPath, encoded(translucentImage(48, 48), "PNG")));
        QCOMPARE(s.run(),
                 assembled(s)
                     + QStringList({"log 无效的ICO文件头",
                                    "log 警告：提供的图标文件无效，将尝试从主程序提取图标"})
                     + extracted() + replaced() + done());
    }

    void aMissingUserIconIsNotWorthALine()
    {
        Surroundings s;
        s.job.iconPath = s.temp.filePath("missing.ico");
        QCOMPARE(s.run(), assembled(s) + extracted() + replaced() + done());
    }

    void aUserIconThatCannotBeOpenedIsNotWorthALine()
    {
        Surroundings s;
        s.job.iconPath = s.temp.filePath("source"); // exists, but is no file
        QCOMPARE(s.run(), assembled(s) + extracted() + replaced() + done());
    }

    void runWithoutAnyIcon()
    {
        Surroundings s;
        s.platform.icon = {};
        QCOMPARE(s.run(),
                 assembled(s)
                     + QStringList({"log 尝试从主程序提取图标...", "log 警告：无法从EXE提取图标",
                                    "log 图标数据太小，至少需要6字节",
                                    "log 警告：无法从主程序提取有效图标，将创建无图标的应用"})
                     + done());
        QCOMPARE(s.platform.events, QStringList());
        QVERIFY(!QFile::exists(s.temp.filePath("editor.txt")));
    }

    void aFailedReplacementIsAWarningAndSkipsThePause()
    {
        Surroundings s;
        QVERIFY(QDir(s.temp.filePath("output")).mkpath("my.exe.bak/in the way"));
        QCOMPARE(s.run(),
                 assembled(s) + extracted()
                     + QStringList({"log 开始替换EXE图标...", "log 错误：无法创建备份文件",
                                    "log 警告：图标替换失败"})
                     + done());
        QCOMPARE(s.platform.events, QStringList());
    }

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

    void anExistingOutputIsOverwrittenWithoutAQuestion()
    {
        Surroundings s;
        s.platform.icon = {};
        QVERIFY(writeFile(s.output(), QByteArray(3000000, 'x')));
        QCOMPARE(s.run().mid(assembled(s).size() + 4), done());
        QFile output(s.output());
        QVERIFY(output.open(QIODevice::ReadOnly));
        QVERIFY(output.readAll().startsWith("module;!@Install@!UTF-8!\n"));
    }

    void theOutputMayBeRunByEverybodyAndWrittenByItsOwner()
    {
        Surroundings s;
        s.platform.icon = {};
        s.run();
        constexpr auto all = QFile::Permissions::fromInt(0x7077);
        QCOMPARE(known(QFile::permissions(s.output()) & all),
                 known(QFile::Permissions::fromInt(0x7055)));
    }

    void theArchiveAndTheToolsStay()
    {
        Surroundings s;
        s.temp.plantEditor("");
        s.run();
        QCOMPARE(s.temp.names(),
                 QStringList(
                     {"7zS2.sfx", "7zr.exe", "ResourceHacker.exe", "output", "source", "temp.7z"}));
        QCOMPARE(QDir(s.temp.filePath("output")).entryList(QDir::Files), QStringList{"my.exe"});
    }

    void theDictionarySizeChangesNothing()
    {
        Surroundings s;
        const QStringList withDefault = s.run();
        s.job.dictionarySize = QString();
        QCOMPARE(s.run(), withDefault);
    }

    void itIsInvokedByNameOnItsOwnThread()
    {
        Surroundings s;
        s.platform.icon = {};
        QThread thread;
        Worker worker;
        worker.moveToThread(&thread);
        QStringList seen; // through queued connections, so on this thread
        QObject context;
        connect(&worker, &Worker::logMessage, &context,
                [&seen](const QString &text) { seen << text; });
        connect(&worker, &Worker::finished, &context,
                [&seen](bool success) { seen << (success ? "finished true" : "finished false"); });
        thread.start();
        QVERIFY(QMetaObject::invokeMethod(
            &worker, "createPortableApp", Qt::QueuedConnection, Q_ARG(QString, s.job.folderPath),
            Q_ARG(QString, s.job.archivePath), Q_ARG(QString, s.job.outputDir),
            Q_ARG(QString, s.job.mainExeName), Q_ARG(QString, s.job.iconPath),
            Q_ARG(QString, s.job.compressionLevel), Q_ARG(QString, s.job.compressionMethod),
            Q_ARG(QString, s.job.dictionarySize)));
        QTRY_COMPARE(seen.isEmpty() ? QString() : seen.constLast(), "finished true");
        QCOMPARE(seen.constFirst(), "开始创建便携应用...");
        thread.quit();
        QVERIFY(thread.wait(10000));
    }
};

QTEST_GUILESS_MAIN(TestWorker)
#include "tst_worker.moc"
