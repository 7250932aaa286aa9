// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "cli/commandline.h"

#include <QTest>

namespace {

// The result for the arguments as one text: the message of the refusal, or the values for a job.
QString summaryOf(const CommandLine &line)
{
    switch (line.action) {
    case CommandLine::Action::Refuse:
        return "refused: " + line.message;
    case CommandLine::Action::ShowHelp:
        return "help";
    case CommandLine::Action::ShowVersion:
        return "version";
    case CommandLine::Action::Inspect:
        return "inspect " + line.file + (line.asJson ? " as JSON" : "");
    case CommandLine::Action::Verify:
        return "verify " + line.file + (line.quiet ? ", quiet" : "");
    case CommandLine::Action::Extract:
        return "extract " + line.file + " to <" + line.outputDir + '>';
    case CommandLine::Action::Pack:
        break;
    }
    return QStringLiteral("folder %1, main <%2>, output %3, icon <%4>, level %5, method %6%7")
        .arg(line.folder, line.mainProgram, line.outputDir, line.iconPath)
        .arg(line.levelIndex)
        .arg(line.methodIndex)
        .arg(line.quiet ? ", quiet" : "");
}

} // namespace

class TestCommandLine : public QObject
{
    Q_OBJECT

private slots:
    void accepted_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("summary");
        QTest::newRow("the folder alone: everything else has a default")
            << QStringList({"app"}) << "folder app, main <>, output ., icon <>, level 3, method 0";
        QTest::newRow("every option by its short name")
            << QStringList({"-m", "a.exe", "-o", "out", "-i", "a.ico", "-l", "ultra", "-c", "LZMA2",
                            "-q", "app"})
            << "folder app, main <a.exe>, output out, icon <a.ico>, level 5, method 1, quiet";
        QTest::newRow("every option by its long name, behind the folder")
            << QStringList({"app", "--main", "a.exe", "--output", "out", "--icon", "a.ico",
                            "--level", "store", "--method", "LZMA", "--quiet"})
            << "folder app, main <a.exe>, output out, icon <a.ico>, level 0, method 0, quiet";
        QTest::newRow("a value behind an equals sign")
            << QStringList({"--main=a=b.exe", "--output=my out", "app"})
            << "folder app, main <a=b.exe>, output my out, icon <>, level 3, method 0";
        QTest::newRow("a value right behind a short name")
            << QStringList({"-lfast", "-oout", "app"})
            << "folder app, main <>, output out, icon <>, level 2, method 0";
        QTest::newRow("an option twice: the last one counts")
            << QStringList({"-l", "store", "-l", "maximum", "app"})
            << "folder app, main <>, output ., icon <>, level 4, method 0";
        QTest::newRow("inspect") << QStringList({"inspect", "a.exe"}) << "inspect a.exe";
        QTest::newRow("inspect, as JSON")
            << QStringList({"inspect", "a.exe", "--json"}) << "inspect a.exe as JSON";
        QTest::newRow("verify") << QStringList({"-q", "verify", "a.exe"}) << "verify a.exe, quiet";
        QTest::newRow("extract") << QStringList({"extract", "a.exe"}) << "extract a.exe to <>";
        QTest::newRow("extract to a folder")
            << QStringList({"extract", "-o", "out", "a.exe"}) << "extract a.exe to <out>";
        QTest::newRow("a folder with the name of a command")
            << QStringList({"verify"})
            << "folder verify, main <>, output ., icon <>, level 3, method 0";
        QTest::newRow("words in other capitals")
            << QStringList({"-l", "FastEst", "-c", "lzma2", "app"})
            << "folder app, main <>, output ., icon <>, level 1, method 1";
        QTest::newRow("a folder that looks like an option")
            << QStringList({"--", "-app"})
            << "folder -app, main <>, output ., icon <>, level 3, method 0";
        QTest::newRow("a folder with blanks and Chinese letters")
            << QStringList({"我的 应用/ "})
            << "folder 我的 应用/ , main <>, output ., icon <>, level 3, method 0";
    }
    void accepted()
    {
        QFETCH(QStringList, arguments);
        QTEST(summaryOf(parseCommandLine(QStringList("kestrelpack-cli") + arguments)), "summary");
    }

    void levels_data()
    {
        QTest::addColumn<int>("index"); // index in the list of packaging/compressionoptions.h
        const QStringList names{"store", "fastest", "fast", "normal", "maximum", "ultra"};
        for (int index = 0; index < names.size(); ++index) {
            QTest::newRow(qPrintable(names.at(index))) << index;
        }
    }
    void levels()
    {
        const QString name = QTest::currentDataTag();
        QTEST(parseCommandLine({"kestrelpack-cli", "--level", name, "app"}).levelIndex, "index");
    }

    void refused_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("summary");
        QTest::newRow("no folder") << QStringList({"-q"}) << "refused: no FOLDER was given";
        QTest::newRow("an empty folder") << QStringList({""}) << "refused: no FOLDER was given";
        QTest::newRow("three folders") << QStringList({"a", "-q", "b", "c"})
                                       << "refused: more than one FOLDER was given: a, b, c";
        QTest::newRow("a command with two files")
            << QStringList({"verify", "a", "b"}) << "refused: verify needs one FILE";
        QTest::newRow("an option of another command")
            << QStringList({"verify", "--json", "a"})
            << "refused: --json has no meaning for verify";
        QTest::newRow("an option for packing") << QStringList({"extract", "-l", "fast", "a"})
                                               << "refused: --level has no meaning for extract";
        QTest::newRow("JSON without a command")
            << QStringList({"--json", "app"}) << "refused: --json needs the command inspect";
        QTest::newRow("an option without its value")
            << QStringList({"app", "--main"}) << "refused: Missing value after '--main'.";
        QTest::newRow("a value for an option that has none")
            << QStringList({"--quiet=yes", "app"}) << "refused: Unexpected value after '--quiet'.";
        for (const char *option : {"main", "output", "icon", "level", "method"}) {
            QTest::addRow("an empty text for --%s", option)
                << QStringList({QString("--%1=").arg(option), "app"})
                << QString("refused: --%1 needs a non-empty value").arg(option);
        }
        QTest::newRow("a level's beginning is not the level")
            << QStringList({"-l", "ult", "app"})
            << "refused: no such compression level: ult (available: store, fastest, fast, normal, "
               "maximum, ultra)";
        QTest::newRow("a method of the archiver that the module does not know")
            << QStringList({"-c", "PPMd", "app"})
            << "refused: no such compression method: PPMd (available: LZMA, LZMA2)";
    }
    void refused()
    {
        QFETCH(QStringList, arguments);
        QTEST(summaryOf(parseCommandLine(QStringList("kestrelpack-cli") + arguments)), "summary");
    }

    void answered_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("summary");
        QTest::newRow("help") << QStringList({"--help"}) << "help";
        QTest::newRow("help by its short name") << QStringList({"-h"}) << "help";
        QTest::newRow("version") << QStringList({"--version"}) << "version";
        QTest::newRow("help comes before version")
            << QStringList({"--version", "--help"}) << "help";
        QTest::newRow("help although a folder is missing and a level is wrong")
            << QStringList({"-l", "best", "-h"}) << "help";
        QTest::newRow("a wrong option comes before help")
            << QStringList({"--fast", "--help"}) << "refused: Unknown option 'fast'.";
    }
    void answered()
    {
        QFETCH(QStringList, arguments);
        QTEST(summaryOf(parseCommandLine(QStringList("kestrelpack-cli") + arguments)), "summary");
    }
};

QTEST_APPLESS_MAIN(TestCommandLine)
#include "tst_commandline.moc"
