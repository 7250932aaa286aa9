// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/cli/clirun.h"
#include "tests/support/waiting.h"

#include <QTest>

#include <csignal>

// Sends Ctrl-C to the program alone, in every stage of a job. A file that the fake helper writes,
// or a line of the log, tells the stage, so no result depends on luck.
class TestInterruption : public QObject
{
    Q_OBJECT

private:
    // A real icon makes the job use the icon stage.
    static void addIcon(CliSurroundings &s)
    {
        QFile icon(KESTRELPACK_HELLO_ICON);
        if (!icon.open(QIODevice::ReadOnly)) {
            qFatal("the example's icon is missing");
        }
        s.write("user.ico", icon.readAll());
    }

    static bool isAlive(qint64 id) { return id > 0 && kill(static_cast<pid_t>(id), 0) == 0; }

private slots:
    void theJobIsUndone_data()
    {
        QTest::addColumn<QByteArray>("archiver");
        QTest::addColumn<QByteArray>("editor");
        QTest::addColumn<QString>(
            "lastLine"); // last log line before the signal; empty: wait for the file
        QTest::addColumn<int>("signalNumber");
        const QByteArray works = "write @3 3000000\n";
        const QByteArray hangs = "write @marker 1\nsleep 3600000\n";
        QTest::newRow("while the archiver works") << hangs << QByteArray() << QString() << SIGINT;
        QTest::newRow("while the archiver works, by SIGTERM")
            << hangs << QByteArray() << QString() << SIGTERM;
        QTest::newRow("while the archiver works, by a closed terminal")
            << hangs << QByteArray() << QString() << SIGHUP;
        QTest::newRow("while the editor deletes") << works << hangs << QString() << SIGINT;
        QTest::newRow("while the editor adds")
            << works << "if addoverwrite\n" + hangs << QString() << SIGINT;
        QTest::newRow("in the assembly") << QByteArray("write @3 300000000\n") << QByteArray()
                                         << "The self-extractor module is written" << SIGINT;
    }
    void theJobIsUndone()
    {
        QFETCH(QByteArray, archiver);
        QFETCH(QByteArray, editor);
        QFETCH(QString, lastLine);
        QFETCH(int, signalNumber);
        CliSurroundings s;
        addIcon(s);
        s.write("output/my.exe", "the older one");
        const QByteArray marker = s.path("marker").toUtf8();
        s.temp.plantArchiver(archiver.replace("@marker", marker));
        s.temp.plantEditor(editor.replace("@marker", marker));
        const QStringList before = s.sourceState();

        QProcess process;
        process.start(KESTRELPACK_CLI, QStringList{"-i", s.path("user.ico")} + s.arguments());
        QVERIFY(process.waitForStarted(patience));
        QByteArray output;
        QTRY_VERIFY_WITH_TIMEOUT((process.waitForReadyRead(10),
                                  output += process.readAllStandardOutput(),
                                  lastLine.isEmpty() ? QFile::exists(s.path("marker"))
                                                     : output.contains(lastLine.toUtf8())),
                                 patience);
        QVERIFY(process.state() == QProcess::Running);
        const QList<qint64> helpers = childrenOf(process.processId());
        QCOMPARE(kill(static_cast<pid_t>(process.processId()), signalNumber), 0);
        QVERIFY(process.waitForFinished(patience));

        QCOMPARE(process.exitStatus(), QProcess::CrashExit); // the signal itself ended the program
        QCOMPARE(process.exitCode(), signalNumber);
        const QString errors = QString::fromUtf8(process.readAllStandardError());
        QVERIFY2(errors.endsWith("kestrelpack-cli: interrupted; " + s.product()
                                 + " was not made\n"),
                 qPrintable(errors));
        QCOMPARE(s.read("output/my.exe"), QByteArray("the older one"));
        QCOMPARE(s.namesIn("output"), QStringList("my.exe"));
        QCOMPARE(s.temp.names(), QStringList({"7zS2.sfx", "7zr.exe", "ResourceHacker.exe"}));
        QCOMPARE(s.sourceState(), before);
        for (const qint64 helper : helpers) {
            WAIT_VERIFY(!isAlive(helper));
        }
    }

    void beforeTheEngineRuns_data()
    {
        QTest::addColumn<QString>("stage");
        QTest::newRow("while the folder is listed") << "listing";
        QTest::newRow("while the folder is staged") << "staging";
    }
    void beforeTheEngineRuns()
    {
        QFETCH(QString, stage);
        CliSurroundings s;
        s.write("output/my.exe", "the older one");
        s.write("source/left.out", "content");
        const QStringList before = s.sourceState();
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("KESTRELPACK_TEST_INTERRUPT", stage);
        process.setProcessEnvironment(environment);
        process.start(KESTRELPACK_CLI, QStringList{"-x", "left.out"} + s.arguments());
        QVERIFY(process.waitForFinished(patience));
        QCOMPARE(process.exitStatus(), QProcess::CrashExit);
        QCOMPARE(process.exitCode(), SIGINT);
        QCOMPARE(process.readAllStandardError(),
                 QByteArray("kestrelpack-cli: interrupted; nothing was made\n"));
        QCOMPARE(s.read("output/my.exe"), QByteArray("the older one"));
        QCOMPARE(s.namesIn("output"), QStringList("my.exe"));
        QCOMPARE(s.temp.names(), QStringList({"7zS2.sfx", "7zr.exe", "ResourceHacker.exe"}));
        QCOMPARE(s.sourceState(), before);
    }

    // The check has nothing that could stop it. The program waits for it as long as it may, and
    // then cleans up all the same.
    void whileTheProductIsChecked()
    {
        CliSurroundings s;
        s.write("output/my.exe", "the older one");
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("KESTRELPACK_TEST_CHECK", "hang " + s.path("marker"));
        process.setProcessEnvironment(environment);
        process.start(KESTRELPACK_CLI, s.arguments());
        QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(s.path("marker")), patience);
        QCOMPARE(kill(static_cast<pid_t>(process.processId()), SIGINT), 0);
        QVERIFY(process.waitForFinished(patience));
        QCOMPARE(process.exitStatus(), QProcess::CrashExit);
        QCOMPARE(s.read("output/my.exe"), QByteArray("the older one"));
        QCOMPARE(s.namesIn("output"), QStringList("my.exe"));
        QCOMPARE(s.temp.names(), QStringList({"7zS2.sfx", "7zr.exe", "ResourceHacker.exe"}));
    }

private:
    static QList<qint64> childrenOf(qint64 id)
    {
        QList<qint64> children;
        const QDir tasks(QStringLiteral("/proc/%1/task").arg(id));
        for (const QString &task : tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
            QFile file(tasks.filePath(task + "/children"));
            if (file.open(QIODevice::ReadOnly)) {
                for (const QByteArray &child : file.readAll().simplified().split(' ')) {
                    if (!child.isEmpty()) {
                        children << child.toLongLong();
                    }
                }
            }
        }
        return children;
    }
};

QTEST_GUILESS_MAIN(TestInterruption)
#include "tst_interruption.moc"
