// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/support/builtfile.h"
#include "tests/support/onwindows.h"
#include "tests/support/temporaryvariable.h"
#include "tests/support/testfiles.h"
#include "tests/support/waiting.h"

#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>
#include <QTest>

namespace {

const QString warning = "box 警告 | 无法加载样式表，将使用默认外观。\\n"
                        "这可能会影响应用程序的外观，但功能不受影响。 | buttons 400 | alone";
const QString question
    = "box 确认退出 | 确定要退出 Kestrelpack 吗？ | buttons 14000 | over the window";

} // namespace

// Runs the program as a process, from its start to its exit status.
class TestApplication : public QObject
{
    Q_OBJECT

private:
    struct Run
    {
        int status = -1;
        bool crashed = true;
        QStringList output;
        QString errors;
    };

    QProcessEnvironment environmentOfRun() const
    {
        auto environment = QProcessEnvironment::systemEnvironment();
        if (!onWindows) { // on Windows the windows are real
            environment.insert("QT_QPA_PLATFORM", "offscreen");
        }
        environment.insert("XDG_CONFIG_HOME", m_home.filePath("config"));
        environment.insert("XDG_RUNTIME_DIR", m_home.path());
        environment.insert(temporaryDirectoryVariable, m_home.path());
        environment.insert("HOME", m_home.path());
        return environment;
    }

    static Run run(const QString &program, const QProcessEnvironment &environment,
                   const QStringList &arguments = {})
    {
        QProcess process;
        process.setProcessEnvironment(environment);
        process.start(program, arguments);
        if (!process.waitForFinished(patience)) {
            process.kill();
            process.waitForFinished(patience);
        }
        return {
            process.exitCode(), process.exitStatus() != QProcess::NormalExit,
            QString::fromUtf8(process.readAllStandardOutput()).remove('\r').trimmed().split('\n'),
            QString::fromUtf8(process.readAllStandardError())};
    }

    QTemporaryDir m_home;

private slots:
    void startsAndEnds_data()
    {
        QTest::addColumn<QByteArray>("bundle");
        QTest::addColumn<QStringList>("seen");

        QTest::newRow("styled") << QByteArray() << QStringList{"window, styled", question};
        QTest::newRow("without its style sheet: one box, alone, then the plain window")
            << QByteArray("missing") << QStringList{warning, "window, plain", question};
        QTest::newRow("an empty style sheet is as good as none")
            << QByteArray("empty") << QStringList{warning, "window, plain", question};
    }

    void startsAndEnds()
    {
        QFETCH(QByteArray, bundle);
        auto environment = environmentOfRun();
        environment.insert("DRIVEN_BUNDLE", bundle);
        const Run seen = run(builtFile(KESTRELPACK_DRIVEN_APP), environment);
        QTEST(seen.output, "seen");
        QVERIFY(!seen.crashed);
        QCOMPARE(seen.status, 0);
        QCOMPARE(QDir(m_home.path()).entryList({"Kestrelpack_*"}), QStringList());
    }

    void anEarlierMessageHandlerIsKept_data()
    {
        QTest::addColumn<QByteArray>("bundle");
        QTest::addColumn<QStringList>("seen");

        const QString early = "warning driven: the application is being made";
        const QString path = "debug default: 样式文件路径: :/qss/default.css";
        QTest::newRow("styled") << QByteArray()
                                << QStringList{early, path, "debug default: 样式表加载成功",
                                               "window, styled", question};
        QTest::newRow("an empty style sheet")
            << QByteArray("empty")
            << QStringList{early,           path,    "warning default: 样式表为空！", warning,
                           "window, plain", question};
    }

    void anEarlierMessageHandlerIsKept()
    {
        QFETCH(QByteArray, bundle);
        auto environment = environmentOfRun();
        environment.insert("DRIVEN_BUNDLE", bundle);
        environment.insert("DRIVEN_HANDLER", "1");
        Run seen = run(builtFile(KESTRELPACK_DRIVEN_APP), environment);
        // Qt's own code for Windows complains about what Wine lacks, in messages without a category.
        seen.output.removeIf([](const QString &line) { return line.startsWith("critical : "); });
        QTEST(seen.output, "seen");
        QCOMPARE(seen.status, 0);
    }

    void argumentsAreIgnored()
    {
        const Run seen = run(builtFile(KESTRELPACK_DRIVEN_APP), environmentOfRun(),
                             {"--help", "-x", "a folder", "源"});
        QCOMPARE(seen.output, (QStringList{"window, styled", question}));
        QCOMPARE(seen.status, 0);
    }

    void settingsThatCannotBeStoredAreNoFailure()
    {
        if (onWindows) {
            QSKIP("the store is the registry here");
        }
        auto environment = environmentOfRun();
        const QString file = m_home.filePath("a file");
        QVERIFY(writeFile(file, "kept"));
        environment.insert("XDG_CONFIG_HOME", file);
        const Run seen = run(builtFile(KESTRELPACK_DRIVEN_APP), environment);
        QCOMPARE(seen.output, (QStringList{"window, styled", question}));
        QCOMPARE(seen.status, 0);
        QCOMPARE(readFile(file), "kept");
    }

    void withoutADisplayThereIsOneLine_data()
    {
        QTest::addColumn<QString>("platform");
        QTest::addColumn<QString>("display");
        QTest::addColumn<QString>("reason");

        QTest::newRow("none") << "xcb"
                              << ""
                              << "could not connect to display";
        QTest::newRow("one that does not answer") << "xcb"
                                                  << ":4711"
                                                  << "could not connect to display :4711";
        QTest::newRow("unknown platform") << "nonsense"
                                          << ""
                                          << "Could not find the Qt platform plugin \"nonsense\"";
    }

    void withoutADisplayThereIsOneLine()
    {
        if (onWindows) {
            QSKIP("there is always a display here");
        }
        QFETCH(QString, platform);
        QFETCH(QString, display);
        QFETCH(QString, reason);
        auto environment = environmentOfRun();
        environment.insert("QT_QPA_PLATFORM", platform);
        environment.remove("WAYLAND_DISPLAY");
        environment.insert("DISPLAY", display);
        const Run seen = run(builtFile(KESTRELPACK_PROGRAM), environment);
        QVERIFY(!seen.crashed);
        QCOMPARE(seen.status, 1);
        QCOMPARE(seen.errors.count('\n'), 1);
        QVERIFY2(seen.errors.startsWith("kestrelpack: cannot open a window: " + reason),
                 qPrintable(seen.errors));
        QVERIFY(seen.errors.contains("kestrelpack-cli works without a display"));
    }
};

QTEST_GUILESS_MAIN(TestApplication)

#include "tst_application.moc"
