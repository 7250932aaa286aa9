// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "cli/commandline.h"

#include <QCommandLineParser>

namespace {

const QStringList levelNames{"store", "fastest", "fast", "normal", "maximum", "ultra"};
const QStringList methodNames{"LZMA", "LZMA2"};

const char helpText[] = R"(Usage: kestrelpack-cli [options] FOLDER
       kestrelpack-cli inspect [--json] FILE
       kestrelpack-cli verify FILE
       kestrelpack-cli extract [--output DIR] FILE

Packs FOLDER, a folder with a Windows application, into one executable that unpacks itself and runs.
The commands read an executable that was made so: inspect shows what is in it, verify decodes all of it
and compares every checksum, extract unpacks it into a new folder.

Options:
  -m, --main NAME        main program in FOLDER; not needed if FOLDER contains exactly one .exe file
  -o, --output DIR       where the executable goes (default: the current directory; created if missing)
  -i, --icon FILE        .ico file (default: the main program's own icon)
  -l, --level LEVEL      store, fastest, fast, normal (default), maximum, ultra
  -c, --method METHOD    LZMA (default), LZMA2
  -q, --quiet            only warnings and errors
      --json             inspect: JSON, with the SHA-256 of each file
      --version          show the version
  -h, --help             show this help

The executable's name comes from the main program: my.tool.exe in FOLDER gives DIR/my.exe. It replaces a file
of that name, but only when it is complete.

Exit status: 0 the executable is complete, 1 the job failed, or the executable that was read would not start,
2 nothing was started: wrong usage, or another job is making the same file. If the job is interrupted, it
leaves nothing behind, and the exit status is 130 after Ctrl-C (on Windows 0xC000013A).
)";

CommandLine refusal(const QString &message)
{
    CommandLine line;
    line.action = CommandLine::Action::Refuse;
    line.message = message;
    return line;
}

CommandLine answer(CommandLine::Action action, const QString &text)
{
    CommandLine line;
    line.action = action;
    line.message = text;
    return line;
}

struct Options
{
    QCommandLineOption main{{"m", "main"}, {}, "NAME"};
    QCommandLineOption output{{"o", "output"}, {}, "DIR"};
    QCommandLineOption icon{{"i", "icon"}, {}, "FILE"};
    QCommandLineOption level{{"l", "level"}, {}, "LEVEL"};
    QCommandLineOption method{{"c", "method"}, {}, "METHOD"};
    QCommandLineOption quiet{{"q", "quiet"}};
    QCommandLineOption json{"json"};
    QCommandLineOption version{"version"};
    QCommandLineOption help{{"h", "help"}};
};

// Returns the message for the first option with an empty value, or nothing. An empty value mostly
// comes from a shell variable that is not set.
QString emptyValueMessage(const QCommandLineParser &parser, const Options &options)
{
    for (const auto *option :
         {&options.main, &options.output, &options.icon, &options.level, &options.method}) {
        if (parser.isSet(*option) && parser.value(*option).isEmpty()) {
            return QStringLiteral("--%1 needs a non-empty value").arg(option->names().constLast());
        }
    }
    return {};
}

using Action = CommandLine::Action;

// The commands that read a produced file.
const QHash<QString, Action> readingCommands{{"inspect", Action::Inspect},
                                             {"verify", Action::Verify},
                                             {"extract", Action::Extract}};

// The name of the first option that is given and does not belong to `action`, or nothing.
QString foreignOption(const QCommandLineParser &parser, const Options &options, Action action)
{
    QList<const QCommandLineOption *> foreign{&options.main, &options.icon, &options.level,
                                              &options.method};
    if (action != Action::Inspect) {
        foreign.append(&options.json);
    }
    if (action != Action::Extract) {
        foreign.append(&options.output);
    }
    for (const auto *option : foreign) {
        if (parser.isSet(*option)) {
            return option->names().constLast();
        }
    }
    return {};
}

CommandLine readingLine(const QCommandLineParser &parser, const Options &options, Action action,
                        const QString &command)
{
    const QStringList files = parser.positionalArguments().mid(1);
    if (files.size() != 1 || files.constFirst().isEmpty()) {
        return refusal(QStringLiteral("%1 needs one FILE").arg(command));
    }
    if (const QString option = foreignOption(parser, options, action); !option.isEmpty()) {
        return refusal(QStringLiteral("--%1 has no meaning for %2").arg(option, command));
    }
    CommandLine line;
    line.action = action;
    line.file = files.constFirst();
    line.outputDir = parser.value(options.output);
    line.asJson = parser.isSet(options.json);
    line.quiet = parser.isSet(options.quiet);
    const QString message = emptyValueMessage(parser, options);
    return message.isEmpty() ? line : refusal(message);
}

// Sets the compression indexes. Returns an error message if a value is wrong, otherwise nothing.
QString readCompression(const QCommandLineParser &parser, const Options &options, CommandLine &line)
{
    if (parser.isSet(options.level)) {
        line.levelIndex = int(levelNames.indexOf(parser.value(options.level).toLower()));
        if (line.levelIndex < 0) {
            return QStringLiteral("no such compression level: %1 (available: %2)")
                .arg(parser.value(options.level), levelNames.join(", "));
        }
    }
    if (parser.isSet(options.method)) {
        line.methodIndex = int(methodNames.indexOf(parser.value(options.method).toUpper()));
        if (line.methodIndex < 0) {
            return QStringLiteral("no such compression method: %1 (available: %2)")
                .arg(parser.value(options.method), methodNames.join(", "));
        }
    }
    return {};
}

} // namespace

CommandLine parseCommandLine(const QStringList &arguments)
{
    const Options options;
    QCommandLineParser parser;
    parser.addOptions({options.main, options.output, options.icon, options.level, options.method,
                       options.quiet, options.json, options.version, options.help});
    if (!parser.parse(arguments)) {
        return refusal(parser.errorText());
    }
    if (parser.isSet(options.help)) {
        return answer(CommandLine::Action::ShowHelp, QString::fromUtf8(helpText));
    }
    if (parser.isSet(options.version)) {
        return answer(CommandLine::Action::ShowVersion,
                      QStringLiteral("kestrelpack-cli " KESTRELPACK_VERSION "\n"));
    }

    const QStringList folders = parser.positionalArguments();
    // One argument is always a folder, whatever its name is.
    const auto command = folders.size() > 1 ? readingCommands.constFind(folders.constFirst())
                                            : readingCommands.constEnd();
    if (command != readingCommands.constEnd()) {
        return readingLine(parser, options, *command, command.key());
    }
    if (parser.isSet(options.json)) {
        return refusal(QStringLiteral("--json needs the command inspect"));
    }
    if (folders.size() != 1 || folders.constFirst().isEmpty()) {
        return refusal(
            folders.size() > 1
                ? QStringLiteral("more than one FOLDER was given: %1").arg(folders.join(", "))
                : QStringLiteral("no FOLDER was given"));
    }
    CommandLine line;
    line.folder = folders.constFirst();
    line.mainProgram = parser.value(options.main);
    line.iconPath = parser.value(options.icon);
    line.quiet = parser.isSet(options.quiet);
    if (parser.isSet(options.output)) {
        line.outputDir = parser.value(options.output);
    }
    QString message = emptyValueMessage(parser, options);
    if (message.isEmpty()) {
        message = readCompression(parser, options, line);
    }
    return message.isEmpty() ? line : refusal(message);
}
