// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "cli/commandline.h"

#include "cli/configfile.h"

#include <QCommandLineParser>

namespace {

using Action = CommandLine::Action;

CommandLine refusal(const QString &message)
{
    CommandLine line;
    line.action = Action::Refuse;
    line.message = message;
    return line;
}

CommandLine answer(Action action, const QString &message = {})
{
    CommandLine line;
    line.action = action;
    line.message = message;
    return line;
}

struct ReadingCommand
{
    const char *name;
    CommandFlag flag;
    Action action;
};

constexpr ReadingCommand readingCommands[] = {{"inspect", Inspect, Action::Inspect},
                                              {"verify", Verify, Action::Verify},
                                              {"extract", Extract, Action::Extract}};

// A single argument is always a folder, even if it has the name of a command.
const ReadingCommand *commandIn(const QStringList &positional)
{
    for (const ReadingCommand &command : readingCommands) {
        if (positional.size() > 1 && positional.constFirst() == QLatin1String(command.name)) {
            return &command;
        }
    }
    return nullptr;
}

void addOptions(QCommandLineParser &parser)
{
    for (const OptionInfo &info : options()) {
        QStringList names{QString::fromLatin1(info.name)};
        if (info.shortName) {
            names.prepend(QString(QLatin1Char(info.shortName)));
        }
        parser.addOption(QCommandLineOption(names, {}, QString::fromLatin1(info.valueName)));
    }
}

OptionValues valuesOf(const QCommandLineParser &parser)
{
    OptionValues values;
    for (const OptionInfo &info : options()) {
        const QString name = QString::fromLatin1(info.name);
        if (parser.isSet(name)) {
            values.insert(info.id,
                          info.kind == OptionKind::Switch ? QStringList(QString())
                                                          : parser.values(name));
        }
    }
    return values;
}

// The first option that is given and does not belong to `command`, or nullptr.
const OptionInfo *foreignOption(const OptionValues &values, CommandFlag command)
{
    for (const OptionInfo &info : options()) {
        if (values.contains(info.id) && !info.commands.testFlag(command)) {
            return &info;
        }
    }
    return nullptr;
}

CommandLine readingLine(const OptionValues &values, const ReadingCommand &command,
                        const QStringList &files)
{
    const QString name = QString::fromLatin1(command.name);
    if (files.size() != 1 || files.constFirst().isEmpty()) {
        return refusal(text("%1 needs one FILE").arg(name));
    }
    if (const OptionInfo *const foreign = foreignOption(values, command.flag)) {
        return refusal(text("--%1 has no meaning for %2").arg(QLatin1String(foreign->name), name));
    }
    if (const QString message = wrongValue(values); !message.isEmpty()) {
        return refusal(message);
    }
    CommandLine line;
    line.action = command.action;
    line.file = files.constFirst();
    line.outputDir = lastValue(values, OptionId::Output);
    line.asJson = values.contains(OptionId::Json);
    line.quiet = values.contains(OptionId::Quiet);
    line.language = languageNamed(lastValue(values, OptionId::Language));
    return line;
}

CommandLine packingLine(OptionValues values, const QStringList &folders)
{
    if (folders.size() != 1 || folders.constFirst().isEmpty()) {
        return refusal(folders.size() > 1
                           ? text("more than one FOLDER was given: %1").arg(folders.join(", "))
                           : text("no FOLDER was given"));
    }
    if (values.contains(OptionId::Config)) {
        const QString path = lastValue(values, OptionId::Config);
        if (path.isEmpty()) {
            return refusal(text("--%1 needs a non-empty value").arg(QLatin1String("config")));
        }
        const auto read = readConfigFile(path);
        if (const auto *message = std::get_if<QString>(&read)) {
            return refusal(*message);
        }
        const OptionValues &inFile = std::get<OptionValues>(read);
        for (auto it = inFile.begin(); it != inFile.end(); ++it) {
            if (!values.contains(it.key())) { // the command line has priority
                values.insert(it.key(), it.value());
            }
        }
    }
    const auto pack = packOptionsFrom(values, folders.constFirst());
    if (const auto *message = std::get_if<QString>(&pack)) {
        return refusal(*message);
    }
    CommandLine line;
    line.pack = std::get<PackOptions>(pack);
    line.language = languageNamed(lastValue(values, OptionId::Language));
    return line;
}

} // namespace

CommandLine parseCommandLine(const QStringList &arguments)
{
    QCommandLineParser parser;
    addOptions(parser);
    if (!parser.parse(arguments)) {
        return refusal(parser.errorText());
    }
    const OptionValues values = valuesOf(parser);
    if (values.contains(OptionId::Help)) {
        return answer(Action::ShowHelp);
    }
    if (values.contains(OptionId::Version)) {
        return answer(Action::ShowVersion,
                      QStringLiteral("kestrelpack-cli " KESTRELPACK_VERSION "\n"));
    }
    const QStringList positional = parser.positionalArguments();
    if (const ReadingCommand *const command = commandIn(positional)) {
        return readingLine(values, *command, positional.mid(1));
    }
    return packingLine(values, positional);
}

std::optional<Language> languageIn(const QStringList &arguments)
{
    const QString option = QStringLiteral("--language");
    std::optional<Language> found;
    for (qsizetype i = 1; i < arguments.size() && arguments.at(i) != QLatin1String("--"); ++i) {
        const QString &argument = arguments.at(i);
        if (argument == option && i + 1 < arguments.size()) {
            found = languageNamed(arguments.at(i + 1));
        } else if (argument.startsWith(option + '=')) {
            found = languageNamed(argument.mid(option.size() + 1));
        }
    }
    return found;
}
