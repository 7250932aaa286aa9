// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "packaging/worker.h"

#include "tests/packaging/workerrun.h"
#include "tests/support/knownpermissions.h"
#include "tests/support/waiting.h"

#include <QMetaMethod>
#include <QTest>
#include <QThread>

// Jobs that succeed, with all signals in order. The worker lives in the test's thread.
class TestWorker : public QObject
{
    Q_OBJECT

private:
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
        QVERIFY(QFile::exists(s.temp.filePath("editor.txt")));
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
        s.job.iconPath = s.temp.filePath("source"); // exists, but is not a file
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
        QStringList seen; // the connections are queued, so this fills on this thread
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
        WAIT_COMPARE(seen.isEmpty() ? QString() : seen.constLast(), "finished true");
        QCOMPARE(seen.constFirst(), "开始创建便携应用...");
        thread.quit();
        QVERIFY(thread.wait(patience));
    }
};

QTEST_GUILESS_MAIN(TestWorker)
#include "tst_worker.moc"
