// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "packaging/blockwriter.h"
#include "tests/cli/clirun.h"
#include "tests/support/builtfile.h"
#include "tests/support/onwindows.h"
#include "tests/support/waiting.h"

#include <QTest>

#include <memory>

// The user's files are not lost, and no files stay, in these cases: two jobs at once, a killed job,
// limits that the caller sets, files with the names that the engine uses.
class TestOutputSafety : public QObject
{
    Q_OBJECT

private:
    static QByteArray wholeProduct(const CliSurroundings &s)
    {
        return "module" + configurationBlock("my", "my.tool.exe").toUtf8() + s.read("archive.7z");
    }

    static QStringList helpers() { return {"7zS2.sfx", "7zr.exe", "ResourceHacker.exe"}; }

    static std::unique_ptr<QProcess> start(const QStringList &arguments)
    {
        auto process = std::make_unique<QProcess>();
        process->start(builtFile(KESTRELPACK_CLI), arguments);
        return process;
    }

    // Runs the program from a shell, which first runs the commands in `before`.
    static CliResult runAfter(const QByteArray &before, const CliSurroundings &s)
    {
        QProcess process;
        process.start("/bin/sh",
                      QStringList{"-c", before + "; exec \"$0\" \"$@\"", builtFile(KESTRELPACK_CLI)}
                          + s.arguments());
        return CliSurroundings::resultOf(process);
    }

    // Starts a job and waits until its archiver works. The archiver continues when a file "go"
    // exists.
    static std::unique_ptr<QProcess> startAndHold(CliSurroundings &s, const QStringList &arguments)
    {
        s.useArchiver("write " + s.path("marker").toUtf8() + " 1\nwait " + s.path("go").toUtf8());
        auto process = start(arguments);
        const bool reached
            = QTest::qWaitFor([&s] { return QFile::exists(s.path("marker")); }, patience);
        s.useArchiver("");
        return reached ? std::move(process) : nullptr;
    }

    static void addIcon(CliSurroundings &s)
    {
        QVERIFY(QFile::copy(builtFile(KESTRELPACK_HELLO_ICON), s.path("user.ico")));
    }

private slots:
    void aSecondJobWithTheSameOutputIsRefusedAtOnce()
    {
        CliSurroundings s;
        s.write("output/my.exe", "the older one");
        const auto first = startAndHold(s, s.arguments());
        QVERIFY(first);
        const CliResult second = s.run(s.arguments());
        QCOMPARE(second.exitStatus, 2);
        QCOMPARE(second.errors, "kestrelpack-cli: another job is making " + s.product() + '\n');
        QCOMPARE(second.output, QString());
        QCOMPARE(s.read("output/my.exe"), QByteArray("the older one"));

        s.write("go", "");
        QCOMPARE(CliSurroundings::resultOf(*first).exitStatus, 0);
        QCOMPARE(s.read("output/my.exe"), wholeProduct(s));
        QCOMPARE(s.namesIn("output"), QStringList("my.exe"));
    }

    void jobsWithOtherOutputsInTheSameDirectoryDoNotMind()
    {
        CliSurroundings s;
        s.write("another/other.exe", "program");
        const auto first = startAndHold(s, s.arguments());
        QVERIFY(first);
        QCOMPARE(s.run({"-o", s.path("output"), s.path("another")}).exitStatus, 0);
        s.write("go", "");
        QCOMPARE(CliSurroundings::resultOf(*first).exitStatus, 0);
        QCOMPARE(s.read("output/my.exe"), wholeProduct(s));
        QCOMPARE(s.namesIn("output"), QStringList({"my.exe", "other.exe"}));
        QCOMPARE(s.temp.names(), helpers());
    }

    void pairsOfJobsLeaveAWholeOutput()
    {
        CliSurroundings s;
        s.write("output/my.exe", wholeProduct(s));
        int done = 0;
        for (int pair = 0; pair < 30; ++pair) {
            const auto first = start(s.arguments());
            const auto second = start(s.arguments());
            for (QProcess *process : {first.get(), second.get()}) {
                const CliResult result = CliSurroundings::resultOf(*process);
                QVERIFY(result.ended);
                QVERIFY2(result.exitStatus == 0 || result.exitStatus == 2,
                         qPrintable(result.errors));
                done += result.exitStatus == 0 ? 1 : 0;
            }
            QVERIFY(done > pair);
            QCOMPARE(s.read("output/my.exe"), wholeProduct(s));
            QCOMPARE(s.namesIn("output"), QStringList("my.exe"));
        }
        QCOMPARE(s.temp.names(), helpers());
    }

    void aKilledJobLeavesTheOlderOutputAndNothingAfterTheNextOne_data()
    {
        QTest::addColumn<QByteArray>("archiver");
        QTest::addColumn<QByteArray>("editor");
        const QByteArray hangs = "write @marker 1\nsleep 600000\n";
        QTest::newRow("while the archiver works") << "write @3 1000\n" + hangs << QByteArray();
        QTest::newRow("while the editor deletes") << QByteArray() << hangs;
        QTest::newRow("while the editor adds")
            << QByteArray() << "if addoverwrite\nwrite @2 1000\n" + hangs;
    }
    void aKilledJobLeavesTheOlderOutputAndNothingAfterTheNextOne()
    {
        if (onWindows) {
            QSKIP("a helper outlives its job here");
        }
        QFETCH(QByteArray, archiver);
        QFETCH(QByteArray, editor);
        CliSurroundings s;
        addIcon(s);
        s.write("output/my.exe", "the older one");
        const QByteArray marker = s.path("marker").toUtf8();
        s.useArchiver(archiver.replace("@marker", marker));
        s.temp.plantEditor(editor.replace("@marker", marker));
        const auto killed = start(QStringList{"-i", s.path("user.ico")} + s.arguments());
        QVERIFY(QTest::qWaitFor([&s] { return QFile::exists(s.path("marker")); }, patience));
        killed->kill();
        QVERIFY(killed->waitForFinished(patience));
        QCOMPARE(s.read("output/my.exe"), QByteArray("the older one"));

        s.useArchiver("exit 2"); // the archiver of the next job fails
        s.temp.plantEditor("");
        QCOMPARE(s.run(s.arguments()).exitStatus, 1);
        QCOMPARE(s.read("output/my.exe"), QByteArray("the older one"));
        QCOMPARE(s.namesIn("output"), QStringList("my.exe"));
        QCOMPARE(s.temp.names(), helpers());
    }

    void aJobThatWorksKeepsItsArchiveWhenAnotherRemovesThoseOfKilledOnes()
    {
        CliSurroundings s;
        s.write("another/other.exe", "program");
        const auto killed = startAndHold(s, s.arguments());
        QVERIFY(killed);
        killed->kill();
        QVERIFY(killed->waitForFinished(patience));
        QFile::remove(s.path("marker"));
        const auto working = startAndHold(s, s.arguments());
        QVERIFY(working);
        QCOMPARE(s.run({"-o", s.path("elsewhere"), s.path("another")}).exitStatus, 0);
        s.write("go", "");
        QCOMPARE(CliSurroundings::resultOf(*working).exitStatus, 0);
        QCOMPARE(s.read("output/my.exe"), wholeProduct(s));
        // On Windows the helper of the killed job has only now ended, and a later job removes what is
        // left of both.
        for (int i = 0; onWindows && s.temp.names() != helpers() && i < 20; ++i) {
            QCOMPARE(s.run({"-o", s.path("elsewhere"), s.path("another")}).exitStatus, 0);
        }
        QCOMPARE(s.temp.names(), helpers());
    }

    void theUsersOwnBackupStays_data()
    {
        QTest::addColumn<QByteArray>("archiver");
        QTest::addColumn<int>("exitStatus");
        QTest::newRow("after a success") << QByteArray() << 0;
        QTest::newRow("after a failure") << QByteArray("exit 2") << 1;
    }
    void theUsersOwnBackupStays()
    {
        QFETCH(QByteArray, archiver);
        CliSurroundings s;
        addIcon(s);
        s.write("output/my.exe", "the older one");
        s.write("output/my.exe.bak", "the user's own");
        s.useArchiver(archiver);
        QTEST(s.run(QStringList{"-i", s.path("user.ico")} + s.arguments()).exitStatus,
              "exitStatus");
        QCOMPARE(s.read("output/my.exe.bak"), QByteArray("the user's own"));
        QCOMPARE(s.namesIn("output"), QStringList({"my.exe", "my.exe.bak"}));
    }

    // The engine keeps its backup if it cannot write the icon to the temporary directory.
    void aBackupThatTheEngineLeavesIsRemoved()
    {
        CliSurroundings s;
        addIcon(s);
        QVERIFY(QDir(s.temp.path()).mkpath("temp_icon.ico"));
        const CliResult result = s.run(QStringList{"-i", s.path("user.ico")} + s.arguments());
        QCOMPARE(result.exitStatus, 0);
        QVERIFY2(result.errors.contains("Error: the temporary icon file cannot be created"),
                 qPrintable(result.errors));
        QCOMPARE(s.read("output/my.exe"), wholeProduct(s));
        QCOMPARE(s.namesIn("output"), QStringList("my.exe"));
    }

    void aLimitOnTheSizeOfFilesIsAFailure()
    {
        if (onWindows) {
            QSKIP("there is no such limit here");
        }
        CliSurroundings s;
        s.write("output/my.exe", "the older one");
        s.temp.plantModule(QByteArray(3000000, 'm')); // it and the archive are below the limit
        const CliResult result = runAfter("ulimit -f 7000", s); // in units of 512 bytes
        QVERIFY2(result.ended, qPrintable(QString::number(result.exitStatus)));
        QCOMPARE(result.exitStatus, 1);
        QVERIFY2(result.errors.contains(" could not be written in full"),
                 qPrintable(result.errors));
        QCOMPARE(s.read("output/my.exe"), QByteArray("the older one"));
        QCOMPARE(s.namesIn("output"), QStringList("my.exe"));
        QCOMPARE(s.temp.names(), helpers());
    }

    void aJobNeedsNoStandardStreams_data()
    {
        QTest::addColumn<QByteArray>("closed");
        QTest::newRow("none") << QByteArray("exec <&- >&- 2>&-");
        QTest::newRow("no input") << QByteArray("exec <&-");
        QTest::newRow("no output") << QByteArray("exec >&-");
        QTest::newRow("no errors") << QByteArray("exec 2>&-");
    }
    void aJobNeedsNoStandardStreams()
    {
        if (onWindows) {
            QSKIP("there is no shell here to close them");
        }
        QFETCH(QByteArray, closed);
        CliSurroundings s;
        s.write("output/my.exe", "the older one");
        QCOMPARE(runAfter(closed, s).exitStatus, 0);
        QCOMPARE(s.read("output/my.exe"), wholeProduct(s));
        QCOMPARE(s.namesIn("output"), QStringList("my.exe"));
        QCOMPARE(s.temp.names(), helpers());
    }
};

QTEST_GUILESS_MAIN(TestOutputSafety)
#include "tst_outputsafety.moc"
