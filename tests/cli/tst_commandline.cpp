// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "cli/commandline.h"

#include <QTest>

namespace {

QString summaryOf(const PackOptions &pack)
{
    QStringList parts{
        QStringLiteral("folder %1, main <%2>, output %3, icon <%4>, level %5, method %6")
            .arg(pack.folder, pack.mainProgram, pack.output, pack.iconPath)
            .arg(pack.levelIndex)
            .arg(pack.methodIndex)};
    const auto add = [&parts](bool isSet, const QString &part) {
        if (isSet) {
            parts << part;
        }
    };
    add(pack.profile == Profile::FastStart, "fast start");
    add(pack.profile == Profile::Small, "small");
    add(!pack.name.isEmpty(), "name " + pack.name);
    add(pack.noIcon, "no icon");
    add(pack.console != ConsoleChoice::Auto, QString("console %1").arg(int(pack.console)));
    add(pack.workingFolder != WorkingFolderChoice::Auto,
        QString("cwd %1").arg(int(pack.workingFolder)));
    for (const auto &[field, text] : pack.fields) {
        parts << field + " is <" + text + '>';
    }
    add(!pack.arguments.isEmpty(), "arguments <" + pack.arguments + '>');
    add(!pack.title.isEmpty(), "title <" + pack.title + '>');
    add(pack.silent, "silent");
    add(pack.keepDays != 0, QString("kept for %1 days").arg(pack.keepDays));
    add(pack.keepVerify, "compared");
    add(!pack.excludes.isEmpty(), "without " + pack.excludes.join(" and "));
    add(!pack.latestTime.isEmpty(), "not after " + pack.latestTime);
    add(pack.reproducible, "reproducible");
    add(!pack.verify, "not verified");
    add(pack.quiet, "quiet");
    add(pack.json, "JSON");
    return parts.join(", ");
}

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
    return summaryOf(line.pack);
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
        QTest::newRow("a small product")
            << QStringList({"--profile", "small", "app"})
            << "folder app, main <>, output ., icon <>, level 5, method 0, small";
        QTest::newRow("the default profile decides nothing")
            << QStringList({"--profile", "default", "-l", "fast", "-c", "LZMA2", "app"})
            << "folder app, main <>, output ., icon <>, level 2, method 1";
        const QString usual = "folder app, main <>, output ., icon <>, level 3, method 0";
        const auto addRow
            = [&usual](const char *name, const QStringList &arguments, const QString &more) {
                  QTest::newRow(name) << arguments + QStringList("app") << usual + more;
              };
        addRow("a fast start", {"--profile", "Fast-Start"}, ", fast start");
        addRow("a name", {"-n", "my app"}, ", name my app.exe");
        addRow("a name with its ending", {"--name", "my.EXE"}, ", name my.EXE");
        addRow("no icon", {"-i", "none"}, ", no icon");
        addRow("a console program", {"--console", "YES"}, ", console 1");
        addRow("no console program", {"--console=no"}, ", console 2");
        addRow("a kind by itself", {"--console=auto"}, "");
        addRow("the folder of the application", {"--cwd", "app"}, ", cwd 1");
        addRow("the caller's folder", {"--cwd", "caller"}, ", cwd 2");
        addRow("the executable's folder", {"--cwd", "exe"}, ", cwd 3");
        addRow("a folder by itself", {"--cwd", "auto"}, "");
        addRow("fields", {"--set", "ProductName=A = B", "--set", "CompanyName=C"},
               ", ProductName is <A = B>, CompanyName is <C>");
        addRow("arguments", {"--arguments", "--port 8080 \"a b\""},
               ", arguments <--port 8080 \"a b\">");
        addRow("a title", {"--title", "标题"}, ", title <标题>");
        addRow("silent", {"--silent"}, ", silent");
        addRow("kept", {"--keep", "1"}, ", kept for 1 days");
        addRow("kept for long", {"--keep=3650"}, ", kept for 3650 days");
        addRow("kept and compared", {"--keep-verify", "--keep", "30"},
               ", kept for 30 days, compared");
        addRow("patterns", {"-x", "*.pdb", "--exclude", ".git/"}, ", without *.pdb and .git/");
        addRow("a time in seconds", {"--mtime", "86400"}, ", not after 86400");
        addRow("a time in UTC", {"--mtime", "1970-01-02T00:00:00Z"},
               ", not after 1970-01-02T00:00:00Z");
        addRow("a time elsewhere", {"--mtime", "1970-01-02T02:00:00+02:00"},
               ", not after 1970-01-02T02:00:00+02:00");
        addRow("reproducible", {"--reproducible"}, ", reproducible");
        addRow("not verified", {"--no-verify"}, ", not verified");
        addRow("as JSON", {"--json"}, ", JSON");
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
        QTEST(parseCommandLine({"kestrelpack-cli", "--level", name, "app"}).pack.levelIndex,
              "index");
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
        QTest::newRow("another option for packing")
            << QStringList({"verify", "--no-verify", "a"})
            << "refused: --no-verify has no meaning for verify";
        QTest::newRow("JSON, and nothing to say")
            << QStringList({"--json", "-q", "app"})
            << "refused: --json and --quiet contradict each other";
        QTest::newRow("a word that is none of the option's")
            << QStringList({"--console", "maybe", "app"})
            << "refused: no such value for --console: maybe (available: auto, yes, no)";
        QTest::newRow("a folder that is none of the words")
            << QStringList({"--cwd", "/tmp", "app"})
            << "refused: no such value for --cwd: /tmp (available: app, caller, exe, auto)";
        QTest::newRow("a language that is not there")
            << QStringList({"--language", "de", "verify", "a"})
            << "refused: no such value for --language: de (available: en, zh)";
        for (const char *value : {"ProductName", "=Example", "ProductName="}) {
            QTest::addRow("a field given as %s", value)
                << QStringList({"--set", value, "app"})
                << QString("refused: --set needs FIELD=TEXT, not %1").arg(value);
        }
        QTest::newRow("a field that nobody knows")
            << QStringList({"--set", "ProductNmae=A", "app"})
            << "refused: there is no field \"ProductNmae\"; the fields are Comments, CompanyName, "
               "FileDescription, FileVersion, InternalName, LegalCopyright, LegalTrademarks, "
               "OriginalFilename, PrivateBuild, ProductName, ProductVersion, SpecialBuild";
        QTest::newRow("a field twice, in other capitals")
            << QStringList({"--set", "ProductName=A", "--set", "productname=B", "app"})
            << "refused: the field ProductName is set twice";
        for (const char *value :
             {"yesterday", "-1", "2026-13-31T12:00:00Z", "1969-12-31T23:59:59Z"}) {
            QTest::addRow("the time %s", value)
                << QStringList({"--mtime", value, "app"})
                << QString(
                       "refused: %1 is no time: use seconds since 1970, or a date and time such "
                       "as 2026-01-31T12:00:00Z")
                       .arg(value);
        }
        for (const char *value : {"0", "-1", "3651", "99999999999", "month", "1.5", "30 days"}) {
            QTest::addRow("kept for %s", value)
                << QStringList({QString("--keep=%1").arg(value), "app"})
                << QString("refused: --keep needs a number of days from 1 to 3650, not %1")
                       .arg(value);
        }
        QTest::newRow("compared, but not kept")
            << QStringList({"--keep-verify", "app"}) << "refused: --keep-verify needs --keep";
        QTest::newRow("days for another command") << QStringList({"inspect", "--keep", "3", "a"})
                                                  << "refused: --keep has no meaning for inspect";
        QTest::newRow("a title with a control character of Latin-1")
            << QStringList({"--title", QString("one") + QChar(0x85) + "two", "app"})
            << "refused: the value of --title has a control character in it";
        QTest::newRow("a title of two lines")
            << QStringList({"--title", "one\ntwo", "app"})
            << "refused: the value of --title has a control character in it";
        QTest::newRow("an empty value among others")
            << QStringList({"-x", "*.pdb", "-x", "", "app"})
            << "refused: --exclude needs a non-empty value";
        QTest::newRow("a configuration file that is missing")
            << QStringList({"--config", "/no/such/file", "app"})
            << "refused: the configuration file /no/such/file cannot be read";
        QTest::newRow("an option without its value")
            << QStringList({"app", "--main"}) << "refused: Missing value after '--main'.";
        QTest::newRow("a value for an option that has none")
            << QStringList({"--quiet=yes", "app"}) << "refused: Unexpected value after '--quiet'.";
        for (const OptionInfo &option : options()) {
            if (option.kind != OptionKind::Switch) {
                QTest::addRow("an empty text for --%s", option.name)
                    << QStringList({QString("--%1=").arg(option.name), "app"})
                    << QString("refused: --%1 needs a non-empty value").arg(option.name);
            }
        }
        QTest::newRow("a level's beginning is not the level")
            << QStringList({"-l", "ult", "app"})
            << "refused: no such compression level: ult (available: store, fastest, fast, normal, "
               "maximum, ultra)";
        QTest::newRow("no such profile")
            << QStringList({"--profile", "fast", "app"})
            << "refused: no such value for --profile: fast (available: default, fast-start, small)";
        QTest::newRow("a profile and a level")
            << QStringList({"--profile", "fast-start", "-l", "normal", "app"})
            << "refused: --profile fast-start and --level contradict each other";
        QTest::newRow("a profile and a method")
            << QStringList({"-c", "LZMA", "--profile", "small", "app"})
            << "refused: --profile small and --method contradict each other";
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
