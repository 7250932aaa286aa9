// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "packaging/blockwriter.h"
#include "tests/cli/clirun.h"
#include "tests/support/builtfile.h"
#include "tests/support/onwindows.h"

#include <QTest>

// Tests the terminal program as a user sees it: arguments in, lines and an exit status out.
class TestCli : public QObject
{
    Q_OBJECT

private:
    static QByteArray expectedProduct()
    {
        return "module" + configurationBlock("my", "my.tool.exe").toUtf8();
    }

private slots:
    void aSuccessNamesTheFileInItsLastLine()
    {
        CliSurroundings s;
        const QStringList before = s.sourceState();
        const CliResult result = s.run(s.arguments());
        QCOMPARE(result.exitStatus, 0);
        QCOMPARE(result.outputLines().constFirst(), "Creating the portable application...");
        QCOMPARE(result.outputLines().constLast(), s.product());
        QVERIFY(s.read("output/my.exe").startsWith(expectedProduct()));
        QCOMPARE(s.sourceState(), before);
        QCOMPARE(s.namesIn("output"), QStringList("my.exe"));
        QCOMPARE(s.temp.names(), QStringList({"7zS2.sfx", "7zr.exe", "ResourceHacker.exe"}));
        QVERIFY(result.outputLines().contains("Output directory: " + s.path("output")));
        QCOMPARE(result.errors, QString()); // a main program without an icon is no mistake
    }

    void quietIsSilentOnSuccess_data()
    {
        QTest::addColumn<QString>("icon");
        QTest::newRow("without an icon") << QString();
        QTest::newRow("with an icon") << builtFile(KESTRELPACK_HELLO_ICON);
        QTest::newRow("with an icon that is not wanted") << "none";
    }
    void quietIsSilentOnSuccess()
    {
        CliSurroundings s;
        QFETCH(QString, icon);
        const QStringList option = icon.isEmpty() ? QStringList() : QStringList{"--icon", icon};
        const CliResult result = s.run(option + QStringList{"--quiet"} + s.arguments());
        QCOMPARE(result.exitStatus, 0);
        QCOMPARE(result.output, QString());
        QCOMPARE(result.errors, QString());
        QVERIFY(QFile::exists(s.product()));
    }

    void quietShowsWarnings()
    {
        CliSurroundings s;
        s.write("broken.ico", "GIF89a is no icon");
        const CliResult result
            = s.run(QStringList{"-q", "-i", s.path("broken.ico")} + s.arguments());
        QCOMPARE(result.exitStatus, 0);
        QCOMPARE(result.output, QString());
        QVERIFY2(result.errors.contains("Warning: the given icon file cannot be used"),
                 qPrintable(result.errors));
    }

    void theArchiversProgressIsNotInTheLog()
    {
        CliSurroundings s;
        s.useArchiver(
            "print Scanning\\n\n"
            "print   0%\b\b\b\b    \b\b\b\b 12% 3 + a.txt\n"
            "sleep 50\n"
            "print \b\b\b\b\b\b\b\b\b\b\b\b\b\b              \b\b\b\b\b\b\b\b\b\b\b\b\b\b 57% 4 + b.txt\n");
        const CliResult result = s.run(s.arguments());
        QCOMPARE(result.exitStatus, 0);
        QVERIFY2(!result.output.contains('\b') && !result.output.contains("12%")
                     && !result.output.contains("57%"),
                 qPrintable(result.output));
        QVERIFY2(result.output.contains("Scanning\n"), qPrintable(result.output));
    }

    void optionsReachTheArchiver()
    {
        CliSurroundings s;
        s.useArchiver("record " + s.path("arguments").toUtf8());
        QCOMPARE(s.run(QStringList{"-l", "ultra", "-c", "lzma2"} + s.arguments()).exitStatus, 0);
        const QStringList arguments = QString::fromUtf8(s.read("arguments")).split('\n');
        QCOMPARE(arguments.at(5), "-mx=9");
        QCOMPARE(arguments.at(6), "-m0=LZMA2:c=256m");
        QCOMPARE(arguments.at(3), QDir::toNativeSeparators(s.path("source") + "/*"));
    }

    void theOutputDirectoryIsMade()
    {
        CliSurroundings s;
        QCOMPARE(s.run({"-o", s.path("new/one"), s.path("source")}).exitStatus, 0);
        QVERIFY(QFile::exists(s.path("new/one/my.exe")));
    }

    void anOlderOutputIsReplaced()
    {
        CliSurroundings s;
        s.write("output/my.exe", "the older one");
        QCOMPARE(s.run(s.arguments()).exitStatus, 0);
        QVERIFY(s.read("output/my.exe").startsWith(expectedProduct()));
        QCOMPARE(s.namesIn("output"), QStringList("my.exe"));
    }

    void wrongUsageStartsNothing_data()
    {
        // tst_commandline and tst_inputcheck have more rows. "@" stands for the folder of the test.
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("message");
        const QString usage = "; --help shows the usage";
        QTest::newRow("nothing") << QStringList() << "no FOLDER was given" + usage;
        QTest::newRow("a folder that is missing")
            << QStringList({"@/nowhere"}) << "the folder @/nowhere does not exist";
        QTest::newRow("a folder that is a file")
            << QStringList({"@/source/my.tool.exe"}) << "@/source/my.tool.exe is not a folder";
        QTest::newRow("several programs and none named")
            << QStringList({"-o", "@/output", "@/several"})
            << "the folder @/several contains several programs; choose one with --main: a.exe, B.EXE";
        QTest::newRow("a main program that is missing")
            << QStringList({"-m", "no.exe", "-o", "@/output", "@/source"})
            << "the folder @/source contains no file no.exe";
        QTest::newRow("a main program in a folder of the folder that is none")
            << QStringList({"-m", "data/文件.txt", "-o", "@/output", "@/source"})
            << "the main program data/文件.txt is not an .exe file";
        QTest::newRow("a main program that is none")
            << QStringList({"-m", "readme.txt", "-o", "@/output", "@/several"})
            << "the main program readme.txt is not an .exe file";
        QTest::newRow("an icon that is missing")
            << QStringList({"-i", "@/no.ico", "-o", "@/output", "@/source"})
            << "the icon file @/no.ico does not exist";
        QTest::newRow("the folder as the output directory")
            << QStringList({"-o", "@/source", "@/source"})
            << "the output directory @/source is inside the folder to pack";
        QTest::newRow("an output directory in the folder by a link")
            << QStringList({"-o", "@/link/data", "@/source"})
            << "the output directory @/link/data is inside the folder to pack";
        QTest::newRow("an output file that is a folder")
            << QStringList({"-o", "@/taken", "@/source"})
            << "cannot replace the output file @/taken/my.exe";
    }
    void wrongUsageStartsNothing()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, message);
        CliSurroundings s;
        s.write("several/a.exe", "a");
        s.write("several/B.EXE", "b");
        s.write("several/readme.txt", "c");
        QVERIFY(QDir(s.root.path()).mkpath("taken/my.exe"));
        if (!onWindows) {
            QVERIFY(QFile::link(s.path("source"), s.path("link")));
        } else if (arguments.contains("@/link/data")) {
            QSKIP("a link to a folder is a shortcut file here");
        }
        s.temp.plantArchiver("record " + s.path("started").toUtf8() + '\n');
        const QStringList before = s.sourceState();

        arguments.replaceInStrings("@", s.root.path());
        const CliResult result = s.run(arguments);
        QCOMPARE(result.exitStatus, 2);
        QCOMPARE(result.errors, "kestrelpack-cli: " + message.replace('@', s.root.path()) + '\n');
        QCOMPARE(result.output, QString());
        QVERIFY(!QFile::exists(s.path("started")));
        QCOMPARE(s.sourceState(), before);
        QCOMPARE(s.namesIn("output"), QStringList());
    }

    void aBrokenIconIsAWarning()
    {
        CliSurroundings s;
        s.write("broken.ico", "GIF89a is no icon");
        const CliResult result = s.run(QStringList{"-i", s.path("broken.ico")} + s.arguments());
        QCOMPARE(result.exitStatus, 0);
        QVERIFY(result.errors.startsWith(
            "The file does not begin as an icon file does\n"
            "Warning: the given icon file cannot be used; trying the main program's icon\n"));
    }

    void aFailedJobLeavesNothing()
    {
        CliSurroundings s;
        s.temp.plantArchiver("write @3 1000\ncomplain no room\nexit 8\n");
        const CliResult result = s.run(s.arguments());
        QCOMPARE(result.exitStatus, 1);
        QCOMPARE(
            result.errors,
            "Error output of the archiver: no room\nkestrelpack-cli: the job failed; see the lines "
            "above\n");
        QCOMPARE(s.namesIn("output"), QStringList());
        QCOMPARE(s.temp.names(), QStringList({"7zS2.sfx", "7zr.exe", "ResourceHacker.exe"}));
    }

    void aFailedJobKeepsTheOlderOutput()
    {
        CliSurroundings s;
        s.write("output/my.exe", "the older one");
        s.temp.plantArchiver("print done\n"); // but it makes no archive
        const CliResult result = s.run(s.arguments());
        QCOMPARE(result.exitStatus, 1);
        QVERIFY(result.errors.contains("Error: the archive cannot be read\n"));
        QCOMPARE(s.read("output/my.exe"), QByteArray("the older one"));
        QCOMPARE(s.namesIn("output"), QStringList("my.exe"));
    }

    void anArchiveThatIsNotWholeIsAFailure_data()
    {
        QTest::addColumn<QByteArray>("archive");
        const QByteArray archive = archiveOf(100000);
        QTest::newRow("cut off") << archive.left(28000);
        QTest::newRow("its start header is not written yet")
            << archive.left(8) + QByteArray(24, '\0') + archive.mid(32);
        QTest::newRow("nothing but the place of its start header")
            << archive.left(8) + QByteArray(24, '\0');
        QTest::newRow("empty") << QByteArray();
    }
    // An archiver that was stopped leaves such archives, and so does one that still waits for a
    // file when its time is up.
    void anArchiveThatIsNotWholeIsAFailure()
    {
        QFETCH(QByteArray, archive);
        CliSurroundings s;
        s.write("output/my.exe", "the older one");
        s.write("part.7z", archive);
        s.useArchiver("print 100%\n", "part.7z");
        const CliResult result = s.run(s.arguments());
        QCOMPARE(result.exitStatus, 1);
        QVERIFY2(result.errors.contains(
                     "kestrelpack-cli: the archiver did not finish: the archive is incomplete, and "
                     + s.product() + " was not made"),
                 qPrintable(result.errors));
        QCOMPARE(s.read("output/my.exe"), QByteArray("the older one"));
        QCOMPARE(s.namesIn("output"), QStringList("my.exe"));
    }

    void helpersInAPrivateDirectoryAreUsedWhateverTheirModes()
    {
        CliSurroundings s;
        for (const char *name : {"7zr.exe", "7zS2.sfx", "ResourceHacker.exe"}) {
            QVERIFY(
                QFile::setPermissions(s.temp.filePath(name), QFile::Permissions::fromInt(0x7077)));
        }
        QCOMPARE(s.run(s.arguments()).exitStatus, 0);
    }

    // Root may write anywhere. So the directory is one that accepts no files: a read-only mount.
    void anOutputDirectoryThatCannotBeWritten()
    {
        CliSurroundings s;
        const Mount mount(s.path("output"), {"-t", "tmpfs", "-o", "ro,size=1m", "tmpfs"});
        if (!mount.isThere()) {
            QSKIP("only root on Linux can mount");
        }
        const CliResult result = s.run(s.arguments());
        QCOMPARE(result.exitStatus, 2);
        QVERIFY2(result.errors.startsWith("kestrelpack-cli: cannot write to the output directory "
                                          + s.path("output") + ": "),
                 qPrintable(result.errors));
    }

    void aDiskThatIsFullInTheMiddleOfTheOutput()
    {
        CliSurroundings s;
        const Mount mount(s.path("output"), {"-t", "tmpfs", "-o", "size=2m", "tmpfs"});
        if (!mount.isThere()) {
            QSKIP("only root on Linux can mount");
        }
        s.write("output/my.exe", "the older one");
        const CliResult result = s.run(s.arguments());
        QCOMPARE(result.exitStatus, 1);
        QVERIFY2(result.errors.endsWith("kestrelpack-cli: " + s.product()
                                        + " could not be written in full; is the disk full?\n"),
                 qPrintable(result.errors));
        QCOMPARE(s.read("output/my.exe"), QByteArray("the older one"));
        QCOMPARE(s.namesIn("output"), QStringList("my.exe"));
    }

    void aReaderThatGoesAwayDoesNotEndTheJob()
    {
        if (onWindows) {
            QSKIP("there is no shell here to make the pipe");
        }
        CliSurroundings s;
        QProcess process;
        process.start("/bin/sh",
                      {"-c", "\"$0\" --language en -o \"$1\" \"$2\" | head -n 1",
                       builtFile(KESTRELPACK_CLI), s.path("output"), s.path("source")});
        const CliResult result = CliSurroundings::resultOf(process);
        QCOMPARE(result.output, "Creating the portable application...\n");
        QVERIFY(s.read("output/my.exe").startsWith(expectedProduct()));
        QCOMPARE(s.temp.names(), QStringList({"7zS2.sfx", "7zr.exe", "ResourceHacker.exe"}));
    }

    void helpAndVersionGoToStandardOutput()
    {
        CliSurroundings s;
        const CliResult help = s.run({"--help"});
        QCOMPARE(help.exitStatus, 0);
        QVERIFY(help.output.startsWith("Usage: kestrelpack-cli [options] FOLDER\n"));
        QCOMPARE(s.run({"--version"}).output, "kestrelpack-cli " KESTRELPACK_VERSION "\n");
    }

private:
    class Mount
    {
    public:
        Mount(const QString &folder, const QStringList &arguments)
            : m_folder(folder)
            , m_isThere(QProcess::execute("/bin/sh",
                                          QStringList{"-c", "mount \"$@\" 2>/dev/null", "sh"}
                                              + arguments + QStringList{folder})
                        == 0)
        {
        }
        ~Mount()
        {
            if (m_isThere) {
                QProcess::execute("umount", {m_folder});
            }
        }
        Mount(const Mount &) = delete;
        Mount &operator=(const Mount &) = delete;

        bool isThere() const { return m_isThere; }

    private:
        QString m_folder;
        bool m_isThere;
    };
};

QTEST_GUILESS_MAIN(TestCli)
#include "tst_cli.moc"
