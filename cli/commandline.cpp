// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "cli/commandline.h"

#include <QCommandLineParser>

namespace {

const QStringList levelNames{"store", "fastest", "fast", "normal", "maximum", "ultra"};
const QStringList methodNames{"LZMA", "LZMA2"};

const char helpText[] = R"(Usage: kestrelpack-cli [options] FOLDER
Packs FOLDER, a folder with a Windows application, into one executable that unpacks itself and runs.

Options:
  -m, --main NAME        main program in FOLDER; not needed if FOLDER contains exactly one .exe file
  -o, --output DIR       where the executable goes (default: the current directory; created if missing)
  -i, --icon FILE        .ico file (default: the main program's own icon)
  -l, --level LEVEL      store, fastest, fast, normal (default), maximum, ultra
  -c, --method METHOD    LZMA (default), LZMA2
  -q, --quiet            only warnings and errors
      --version          show the version
  -h, --help             show this help

The executable's name comes from the main program: my.tool.exe in FOLDER gives DIR/my.exe. It replaces a file
of that name, but only when it is complete.

Exit status: 0 the executable is complete, 1 the job failed, 2 nothing was started: wrong usage, or another
job is making the same file. If the job is interrupted, it leaves nothing behind, and the exit status
is 130 after Ctrl-C (on Windows 0xC000013A).
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
                       options.quiet, options.version, options.help});
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
