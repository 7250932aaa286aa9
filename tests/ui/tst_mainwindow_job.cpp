// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/support/waiting.h"
#include "tests/ui/support/jobfixture.h"
#include "tests/ui/support/modalanswer.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QTemporaryDir>

namespace {

const QStringList lockedControls = {"startButton", "selectFolderButton", "outputButton",
                                    "iconButton",  "mainExeButton",      "resetButton",
                                    "menuButton"};

const SeenBox success{"完成", "便携应用创建成功！", QMessageBox::Information, QMessageBox::Ok,
                      nullptr};

} // namespace

// The start button and what follows, with fake helper programs.
class TestMainWindowJob : public QObject
{
    Q_OBJECT

private slots:
    void refusedStartOnlyAddsALine()
    {
        JobFixture fixture;
        fixture.open();
        fixture.window->onWorkerLog("an old line");
        fixture.window->onWorkerProgress(70);
        answerBox([&] { fixture.click("startButton"); });
        QCOMPARE(fixture.log(), "an old line\n输入验证失败，操作中止");
        QCOMPARE(fixture.progress(), 70);
        for (const QString &name : lockedControls) {
            QVERIFY2(!fixture.isLocked(qPrintable(name)), qPrintable(name));
        }
    }

    void startLocksSevenControlsAndNothingElse()
    {
        JobFixture fixture;
        fixture.holdArchiver();
        fixture.open();
        fixture.fillIn();
        fixture.window->onWorkerLog("an old line");
        fixture.window->onWorkerProgress(70);
        fixture.click("startButton");
        QCOMPARE(fixture.log(), ""); // before the worker's first line arrives
        QCOMPARE(fixture.progress(), 0);
        WAIT_VERIFY(fixture.isArchiverRunning());

        QStringList locked;
        const auto widgets = fixture.window->findChildren<QWidget *>();
        for (const QWidget *widget : widgets) {
            if (!widget->isEnabled() && !widget->objectName().isEmpty()) {
                locked.append(widget->objectName());
            }
        }
        locked.sort();
        QStringList expected = lockedControls;
        expected.sort();
        QCOMPARE(locked, expected);

        finishJob(fixture);
        for (const QString &name : lockedControls) {
            QVERIFY2(!fixture.isLocked(qPrintable(name)), qPrintable(name));
        }
    }

    void successUnlocksAndThenShowsTheBox()
    {
        JobFixture fixture;
        fixture.open();
        fixture.fillIn();
        bool wasBusy = true;
        const auto boxes = answerBoxes([&] { startAndWait(fixture); }, {QMessageBox::Ok},
                                       [&] { wasBusy = fixture.isBusy(); });
        SeenBox expected = success;
        expected.parent = fixture.window.get();
        QCOMPARE(boxes, QList<SeenBox>{expected});
        QVERIFY(!wasBusy);
        QCOMPARE(fixture.progress(), 100);
        QVERIFY2(fixture.log().contains("\n成功创建便携应用！\n"), qPrintable(fixture.log()));
        QVERIFY(QFile::exists(fixture.outputFolder() + "/my.exe"));
    }

    void failureUnlocksAndShowsNoBox()
    {
        JobFixture fixture;
        fixture.useArchiver("print  40%\nexit 2\n");
        fixture.open();
        fixture.fillIn();
        const auto boxes = answerBoxes([&] { startAndWait(fixture); }, {});
        QCOMPARE(boxes, QList<SeenBox>());
        QVERIFY2(fixture.log().contains("\n7z错误输出: "), qPrintable(fixture.log()));
        QCOMPARE(fixture.progress(), 40); // the last value stays
    }

    void argumentsAreTakenAsTheyStand()
    {
        JobFixture fixture;
        QVERIFY(QDir(fixture.temp.path()).mkpath(" 源 folder "));
        QVERIFY(writeFile(fixture.temp.filePath(" 源 folder /my.exe"), "x"));
        fixture.open();
        fixture.fillIn();
        const QString folder = fixture.temp.filePath(" 源 folder ");
        fixture.find<QLineEdit>("folderLineEdit")->setText(folder);
        answerBoxes([&] { startAndWait(fixture); }, {QMessageBox::Ok});
        const QStringList arguments = fixture.archiverArguments();
        QCOMPARE(arguments.value(2), fixture.windowDirectory() + "/temp.7z");
        QVERIFY2(arguments.contains(folder + QDir::separator() + '*'),
                 qPrintable(arguments.join(' ')));
    }

    void listsBecomeTheArchiversWords_data()
    {
        QTest::addColumn<QByteArray>("list");
        QTest::addColumn<int>("index"); // -1: no selection
        QTest::addColumn<QString>("argument");

        const QStringList levels = {"-mx=0", "-mx=1", "-mx=3", "-mx=5", "-mx=7", "-mx=9"};
        for (int index = 0; index < levels.size(); ++index) {
            QTest::addRow("level %d", index)
                << QByteArray("cmbCompression") << index << levels[index];
        }
        QTest::newRow("no level") << QByteArray("cmbCompression") << -1 << "-mx=5";
        QTest::newRow("LZMA") << QByteArray("cmbMethod") << 0 << "-m0=LZMA";
        QTest::newRow("LZMA2") << QByteArray("cmbMethod") << 1 << "-m0=LZMA2";
        QTest::newRow("no method") << QByteArray("cmbMethod") << -1 << "-m0=LZMA";
    }

    void listsBecomeTheArchiversWords()
    {
        QFETCH(QByteArray, list);
        QFETCH(int, index);
        QFETCH(QString, argument);
        JobFixture fixture;
        fixture.open();
        fixture.fillIn();
        select(fixture, list, index);
        answerBoxes([&] { startAndWait(fixture); }, {QMessageBox::Ok});
        const QStringList arguments = fixture.archiverArguments();
        QVERIFY2(arguments.contains(argument), qPrintable(arguments.join(' ')));
    }

    void dictionaryDoesNotReachTheArchiver()
    {
        QStringList commandLines;
        for (const int index : {0, 2, -1}) {
            JobFixture fixture;
            fixture.open();
            fixture.fillIn();
            select(fixture, "cmbDictSize", index);
            answerBoxes([&] { startAndWait(fixture); }, {QMessageBox::Ok});
            commandLines.append(fixture.archiverArguments()
                                    .join(' ')
                                    .remove(fixture.temp.path())
                                    .remove(QDir(fixture.windowDirectory()).dirName()));
        }
        QCOMPARE(commandLines[0], commandLines[1]);
        QCOMPARE(commandLines[0], commandLines[2]);
        QVERIFY(commandLines[0].contains("temp.7z"));
    }

    void changesDuringAJobDoNotReachIt()
    {
        JobFixture fixture;
        fixture.startAndHold();
        const QString elsewhere = fixture.temp.filePath("elsewhere");
        QVERIFY(QDir().mkpath(elsewhere));
        fixture.type("outputLineEdit", elsewhere);
        fixture.programs()->clear();
        QTest::keyClick(fixture.find<QCheckBox>("chkCleanup"), Qt::Key_Space);
        finishJob(fixture);
        QVERIFY(QFile::exists(fixture.outputFolder() + "/my.exe"));
        QCOMPARE(QDir(elsewhere).entryList(QDir::Files), QStringList());
    }

    void secondJobFollowsTheFirst()
    {
        JobFixture fixture;
        fixture.open();
        fixture.fillIn();
        answerBoxes([&] { startAndWait(fixture); }, {QMessageBox::Ok});
        const QString firstLog = fixture.log();
        QVERIFY(QFile::remove(fixture.outputFolder() + "/my.exe"));
        const auto boxes = answerBoxes([&] { startAndWait(fixture); }, {QMessageBox::Ok});
        QCOMPARE(boxes.size(), 1);
        QCOMPARE(fixture.log(), firstLog); // the log was cleared before, so not twice
        QVERIFY(QFile::exists(fixture.outputFolder() + "/my.exe"));
    }

    void progressFollowsTheWorker()
    {
        JobFixture fixture;
        fixture.open();
        for (const int value : {10, 55, 50, 100}) {
            fixture.window->onWorkerProgress(value);
            QCOMPARE(fixture.progress(), value);
        }
    }

private:
    static void select(JobFixture &fixture, const QByteArray &list, int index)
    {
        if (index < 0) {
            fixture.find<QComboBox>(list.constData())->setCurrentIndex(-1);
        } else {
            fixture.click("advancedTabButton");
            fixture.choose(list.constData(), index);
            fixture.click("basicTabButton");
        }
    }

    static void startAndWait(JobFixture &fixture)
    {
        fixture.click("startButton");
        WAIT_VERIFY(!fixture.isBusy() && QApplication::activeModalWidget() == nullptr);
    }

    static void finishJob(JobFixture &fixture)
    {
        answerBoxes(
            [&] {
                fixture.release();
                WAIT_VERIFY(!fixture.isBusy() && QApplication::activeModalWidget() == nullptr);
            },
            {QMessageBox::Ok});
        QVERIFY(!fixture.isBusy());
    }
};

QTEST_MAIN(TestMainWindowJob)

#include "tst_mainwindow_job.moc"
