// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "packaging/blockwriter.h"
#include "tests/faults/conditions.h"
#include "tests/faults/heldmoment.h"
#include "tests/faults/rownotes.h"
#include "tests/support/folderstate.h"
#include "tests/support/testicons.h"
#include "tests/support/waiting.h"
#include "tests/ui/support/jobfixture.h"
#include "tests/ui/support/modalanswer.h"

// Actions of a person, or of a second window, during a job, and effects of a job on the window.
class TestFaultsWindow : public QObject
{
    Q_OBJECT

private:
    // A second window, in the same temporary directory as the fixture's window.
    struct SecondWindow
    {
        explicit SecondWindow(const JobFixture &fixture, const QString &output)
        {
            window.show();
            edit("folderLineEdit")->setText(fixture.sourceFolder());
            edit("outputLineEdit")->setText(output);
            window.findChild<QComboBox *>("mainExeComboBox")->addItem("my.exe");
        }

        QLineEdit *edit(const char *name) const { return window.findChild<QLineEdit *>(name); }
        QPushButton *startButton() const { return window.findChild<QPushButton *>("startButton"); }
        QString log() const { return window.findChild<QTextEdit *>("logTextEdit")->toPlainText(); }
        void start() const { QTest::mouseClick(startButton(), Qt::LeftButton); }
        bool isBusy() const { return !startButton()->isEnabled(); }

        MainWindow window;
    };

    static bool isThrough(const JobFixture &fixture)
    {
        return !fixture.isBusy() && QApplication::activeModalWidget() == nullptr;
    }

    static void startAndWait(const JobFixture &fixture)
    {
        fixture.click("startButton");
        WAIT_VERIFY(isThrough(fixture));
    }

    static QByteArray productWith(const QByteArray &archive)
    {
        return "module" + configurationBlock("my", "my.exe").toUtf8() + archive;
    }

    // After this call, archivers make this archive.
    static void useArchive(JobFixture &fixture, const QByteArray &archive)
    {
        const QString file = fixture.temp.filePath("archive");
        QVERIFY(writeFile(file, archive));
        fixture.temp.plantArchiver("copy " + file.toUtf8() + " @3\n");
    }

    static QString leftInTemporary(const WindowFixture &fixture)
    {
        const QStringList names
            = QDir(fixture.temp.path()).entryList({"Kestrelpack_*", "temp_icon.ico", "temp.7z"});
        return names.isEmpty() ? "nothing" : names.join(", ");
    }

    // Directory names contain the time in whole seconds.
    static void waitForTheNextSecond()
    {
        const auto second = QDateTime::currentSecsSinceEpoch();
        WAIT_VERIFY(QDateTime::currentSecsSinceEpoch() != second);
    }

private slots:
    void closed_data()
    {
        QTest::addColumn<QString>("moment");
        QTest::addColumn<int>("which");
        QTest::newRow("closed before the archiver starts") << "use 7zr.exe" << 1;
        QTest::newRow("closed before the module is read") << "use 7zS2.sfx" << 1;
        QTest::newRow("closed before the icon is taken") << "extract" << 1;
        QTest::newRow("closed before the editor's first run") << "use ResourceHacker.exe" << 1;
        QTest::newRow("closed before the editor's second run") << "use ResourceHacker.exe" << 2;
        QTest::newRow("closed while the icon cache is refreshed") << "pause" << 1;
        QTest::newRow("closed before the shell is told") << "shell told" << 1;
        QTest::newRow("closed in the job's last second") << "pause" << 4;
    }
    void closed()
    {
        QFETCH(QString, moment);
        QFETCH(int, which);
        JobFixture fixture;
        fixture.platform->icon = extractedIcon(32, 32);
        useArchive(fixture, "an archive");
        HeldMoment held(*fixture.platform, moment, which);
        const QStringList before = folderState(fixture.sourceFolder());
        fixture.open();
        fixture.fillIn();
        fixture.click("startButton");
        WAIT_VERIFY(held.isReached());
        // The window disappears at once. Then it waits, hidden, for the job.
        connect(fixture.window->windowHandle(), &QWindow::visibleChanged, this,
                [&held] { held.release(); });
        fixture.close();

        QCOMPARE(readFile(fixture.outputFolder() + "/my.exe"), productWith("an archive"));
        QCOMPARE(QDir(fixture.outputFolder()).entryList(QDir::Files), QStringList{"my.exe"});
        QCOMPARE(leftInTemporary(fixture), "nothing");
        QCOMPARE(fixture.settings.value("outputPath"), fixture.outputFolder());
        QCOMPARE(folderState(fixture.sourceFolder()), before);
        noteResult({"is done", "(the window is gone)", "my.exe, whole", "nothing"});
    }

    void flood_data()
    {
        QTest::addColumn<QByteArray>("archiver");
        QTest::addColumn<int>("most"); // characters in the window
        QTest::newRow("the archiver prints 100 MiB: the window shows the beginning and the end")
            << QByteArray("flood 100\n") << 50 * 1048576;
    }
    void flood()
    {
        QFETCH(QByteArray, archiver);
        QFETCH(int, most);
        JobFixture fixture;
        fixture.useArchiver(archiver);
        fixture.open();
        fixture.fillIn();
        int turnsDuringTheFlood = 0;
        QTimer turns;
        connect(&turns, &QTimer::timeout, this,
                [&] { turnsDuringTheFlood += fixture.isBusy() ? 1 : 0; });
        turns.start(10);
        const auto boxes = answerBoxes([&] { startAndWait(fixture); }, {QMessageBox::Ok});

        QCOMPARE(boxes.size(), 1);
        QVERIFY(fixture.log().startsWith("开始创建便携应用...\n"));
        QVERIFY(fixture.log().contains("（此处省略 "));
        QVERIFY(fixture.log().contains("\n成功创建便携应用！\n"));
        QVERIFY2(turnsDuringTheFlood > 20, qPrintable(QString::number(turnsDuringTheFlood)));
        // Usually 17 million: what waited at the end, and what was shown before. The memory follows from that, but
        // also from the signals that wait at the time, and so from the speed of the machine.
        const qsizetype shown = fixture.log().size();
        QVERIFY2(shown < most, qPrintable(QString::number(shown)));
        noteResult({"is done", "`（此处省略 %1 行）`", "my.exe, whole", "the window's directory"});
    }

    void twoWindows_data()
    {
        QTest::addColumn<QString>("secondOutput");
        QTest::addColumn<QByteArray>("first"); // the archives in the two outputs at the end
        QTest::addColumn<QByteArray>("second");
        QTest::addColumn<QString>("ending");
        QTest::addColumn<QString>("left");
        const QByteArray shorter(1000, 's');
        const QByteArray longer(2000, 'l');
        QTest::newRow("two windows write two outputs")
            << "elsewhere" << shorter << longer << "is done"
            << "my.exe, whole, in both";
        // The second job begins after the first has emptied the output. The first goes on after the
        // second has ended.
        QTest::newRow("two windows write one output at the same time: it is a mixture")
            << "output" << shorter + longer.mid(1000) << shorter + longer.mid(1000)
            << "is done, with a bad output"
            << "the shorter my.exe, with the end of the longer";
    }
    void twoWindows()
    {
        QFETCH(QString, secondOutput);
        QFETCH(QByteArray, first);
        QFETCH(QByteArray, second);
        QFETCH(QString, ending);
        QFETCH(QString, left);
        JobFixture fixture;
        useArchive(fixture, QByteArray(1000, 's'));
        const QString elsewhere = fixture.temp.filePath(secondOutput);
        QVERIFY(QDir().mkpath(elsewhere));
        const QStringList before = folderState(fixture.sourceFolder());
        fixture.open();
        fixture.fillIn();
        waitForTheNextSecond();
        SecondWindow other(fixture, elsewhere);
        HeldMoment held(*fixture.platform, "use 7zS2.sfx");
        const auto boxes = answerBoxes(
            [&] {
                fixture.click("startButton");
                WAIT_VERIFY(held.isReached());
                useArchive(fixture, QByteArray(2000, 'l'));
                other.start();
                WAIT_VERIFY(!other.isBusy() && QApplication::activeModalWidget() == nullptr);
                held.release();
                WAIT_VERIFY(isThrough(fixture));
            },
            {QMessageBox::Ok, QMessageBox::Ok});
        QCOMPARE(boxes.size(), 2);
        QVERIFY(other.log().contains("\n成功创建便携应用！\n"));
        QCOMPARE(readFile(fixture.outputFolder() + "/my.exe"), productWith(first));
        QCOMPARE(readFile(elsewhere + "/my.exe"), productWith(second));
        QCOMPARE(folderState(fixture.sourceFolder()), before);
        noteResult(
            {ending, "`成功创建便携应用！`, in both windows", left, "the windows' directories"});
    }

    void directory_data()
    {
        QTest::addColumn<bool>("byAnother");
        QTest::newRow("a window of the same second is closed: the directory was its own, too")
            << true;
        QTest::newRow("the window's directory vanishes while the archiver works") << false;
    }
    void directory()
    {
        QFETCH(bool, byAnother);
        JobFixture fixture;
        std::unique_ptr<MainWindow> other;
        do { // a second can end between the two
            fixture.close();
            waitForTheNextSecond();
            other = std::make_unique<MainWindow>();
            fixture.startAndHold();
        } while (QDir(fixture.temp.path()).entryList({"Kestrelpack_*"}).size() != 1);
        const QStringList before = folderState(fixture.sourceFolder());
        if (byAnother) {
            other.reset();
        } else {
            QVERIFY(QDir(fixture.windowDirectory()).removeRecursively());
        }
        const auto boxes = answerBoxes(
            [&] {
                fixture.release();
                WAIT_VERIFY(isThrough(fixture));
            },
            {});
        QCOMPARE(boxes, QList<SeenBox>());
        QVERIFY2(fixture.log().endsWith("\n错误：无法读取压缩包文件"), qPrintable(fixture.log()));
        QCOMPARE(readFile(fixture.outputFolder() + "/my.exe"), productWith(""));
        QCOMPARE(leftInTemporary(fixture), "nothing");
        QCOMPARE(folderState(fixture.sourceFolder()), before);
        noteResult({"fails", "`错误：无法读取压缩包文件`", "my.exe without an archive", "nothing"});
    }

    void earlierArchive_data()
    {
        QTest::addColumn<bool>("unused");
        QTest::newRow(
            "the archive of the window's job before it is still there: it is not added to")
            << true;
    }
    void earlierArchive()
    {
        JobFixture fixture;
        fixture.open();
        fixture.fillIn();
        answerBoxes([&] { startAndWait(fixture); }, {QMessageBox::Ok});
        const QString archive = fixture.windowDirectory() + "/temp.7z";
        QVERIFY(QFile::exists(archive));
        fixture.temp.plantArchiver("copy @3 " + fixture.temp.filePath("seen").toUtf8() + "\ncopy "
                                   + fixture.source("my.exe").toUtf8() + " @3\n");
        answerBoxes([&] { startAndWait(fixture); }, {QMessageBox::Ok});
        QCOMPARE(readFile(fixture.temp.filePath("seen")),
                 QByteArray()); // the archiver found no older archive to copy
        QCOMPARE(readFile(fixture.outputFolder() + "/my.exe"), productWith("program"));
        noteResult({"is done", "`压缩包创建成功`", "my.exe, whole", "the window's directory"});
    }
};

QTEST_MAIN(TestFaultsWindow)

#include "tst_faults_window.moc"
