// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/support/waiting.h"
#include "tests/ui/support/jobfixture.h"

#include <QFutureWatcher>
#include <QPromise>

// The window's own process. No part of the program starts it, so the test does.
class TestMainWindowProcess : public QObject
{
    Q_OBJECT

private slots:
    void outputMovesTheBarAndIsLogged_data()
    {
        QTest::addColumn<QByteArray>("output");
        QTest::addColumn<int>("progress"); // 20 before the output
        QTest::addColumn<QString>("log");

        QTest::newRow("percentage between blanks and a line end")
            << QByteArray("print \\n  45% + read me.txt\\n") << 45 << "45% + read me.txt";
        QTest::newRow("of two percentages the first")
            << QByteArray("print 3% and 7%") << 3 << "3% and 7%";
        QTest::newRow("no percentage") << QByteArray("print Scanning\\n") << 20 << "Scanning";
        QTest::newRow("number beyond int")
            << QByteArray("print 99999999999%") << 0 << "99999999999%";
        QTest::newRow("Chinese") << QByteArray("print 正在压缩 80%") << 80 << "正在压缩 80%";
    }

    void outputMovesTheBarAndIsLogged()
    {
        QFETCH(QByteArray, output);
        JobFixture fixture;
        fixture.open();
        fixture.window->onWorkerProgress(20);
        // The process stays open, so that its end does not move the bar.
        fixture.temp.plantArchiver(output + "\nwait " + fixture.temp.filePath("go").toUtf8());
        auto *process = start(fixture);
        QFETCH(QString, log);
        WAIT_COMPARE(fixture.log(), log);
        QTEST(fixture.progress(), "progress");
        fixture.release();
        QVERIFY(process->waitForFinished(patience));
    }

    void endIsToldByTheExitCodeAlone_data()
    {
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QProcess::ExitStatus>("status");
        QTest::addColumn<QString>("log");
        QTest::addColumn<int>("progress"); // 20 before the end

        QTest::newRow("success") << 0 << QProcess::NormalExit << "处理完成！" << 100;
        QTest::newRow("crash with 0") << 0 << QProcess::CrashExit << "处理完成！" << 100;
        QTest::newRow("failure") << 7 << QProcess::NormalExit << "处理失败，错误代码: 7" << 20;
        QTest::newRow("negative code")
            << -1073741819 << QProcess::CrashExit << "处理失败，错误代码: -1073741819" << 20;
    }

    void endIsToldByTheExitCodeAlone()
    {
        QFETCH(int, exitCode);
        QFETCH(QProcess::ExitStatus, status);
        JobFixture fixture;
        fixture.open();
        fixture.window->onWorkerProgress(20);
        lock(fixture);
        emit process(fixture)->finished(exitCode, status);
        QTEST(fixture.log(), "log");
        QTEST(fixture.progress(), "progress");
        QVERIFY(!fixture.isBusy());
    }

    void realEndIsLogged()
    {
        JobFixture fixture;
        fixture.open();
        fixture.temp.plantArchiver("exit 3");
        start(fixture);
        WAIT_COMPARE(fixture.log(), "处理失败，错误代码: 3");
    }

    void errorsHaveTheirTexts_data()
    {
        QTest::addColumn<int>("error");
        QTest::addColumn<QString>("text");

        QTest::newRow("failed to start") << int(QProcess::FailedToStart) << "无法启动程序";
        QTest::newRow("crashed") << int(QProcess::Crashed) << "程序崩溃";
        QTest::newRow("timed out") << int(QProcess::Timedout) << "操作超时";
        QTest::newRow("reading") << int(QProcess::ReadError) << "读取错误";
        QTest::newRow("writing") << int(QProcess::WriteError) << "写入错误";
        QTest::newRow("unknown") << int(QProcess::UnknownError) << "未知错误";
        QTest::newRow("beyond the known ones") << 7 << "未知错误";
    }

    void errorsHaveTheirTexts()
    {
        QFETCH(int, error);
        QFETCH(QString, text);
        JobFixture fixture;
        fixture.open();
        fixture.window->onWorkerProgress(20);
        lock(fixture);
        emit process(fixture)->errorOccurred(static_cast<QProcess::ProcessError>(error));
        QCOMPARE(fixture.log(), "发生错误: " + text + "\n错误详情: \n程序输出: ");
        QCOMPARE(fixture.progress(), 20);
        QVERIFY(!fixture.isBusy());
    }

    void crashIsLoggedWithWhatTheProgramSaid()
    {
        JobFixture fixture;
        fixture.open();
        fixture.temp.plantArchiver("complain  disk\\nfull \ncrash");
        start(fixture);
        QTRY_VERIFY2_WITH_TIMEOUT(fixture.log().contains(
                                      "发生错误: 程序崩溃\n错误详情: disk\nfull "),
                                  qPrintable(fixture.log()), patience);
    }

    void missingProgramIsLogged()
    {
        JobFixture fixture;
        fixture.open();
        process(fixture)->start(fixture.temp.filePath("missing"), QStringList());
        WAIT_COMPARE(fixture.log(), "发生错误: 无法启动程序\n错误详情: \n程序输出: ");
    }

    void watcherMovesTheBar()
    {
        JobFixture fixture;
        fixture.open();
        auto *watcher = static_cast<QFutureWatcher<bool> *>(
            fixture.window->findChild<QFutureWatcherBase *>());
        QVERIFY(watcher != nullptr);
        QPromise<bool> promise;
        watcher->setFuture(promise.future());
        promise.start();
        promise.setProgressRange(0, 100);
        promise.setProgressValue(64);
        WAIT_COMPARE(fixture.progress(), 64);
        promise.finish();
    }

private:
    static QProcess *process(const JobFixture &fixture)
    {
        auto *found = fixture.window->findChild<QProcess *>();
        if (found == nullptr) {
            qFatal("the window has no process");
        }
        return found;
    }

    static QProcess *start(const JobFixture &fixture)
    {
        process(fixture)->start(fixture.temp.filePath("7zr.exe"), QStringList());
        return process(fixture);
    }

    static void lock(const JobFixture &fixture)
    {
        fixture.find<QPushButton>("startButton")->setEnabled(false);
    }
};

QTEST_MAIN(TestMainWindowProcess)

#include "tst_mainwindow_process.moc"
