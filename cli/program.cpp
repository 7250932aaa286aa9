// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "cli/program.h"

#include "cli/commandline.h"
#include "cli/console.h"
#include "cli/earlyinterruption.h"
#include "cli/exitstatus.h"
#include "cli/fastarchiver.h"
#include "cli/helptext.h"
#include "cli/inputcheck.h"
#include "cli/outputguard.h"
#include "cli/preparejob.h"
#include "cli/privatedirectory.h"
#include "cli/readingcommands.h"
#include "cli/stagejob.h"
#include "cli/terminal.h"
#include "cli/terminaljob.h"

#include <QCoreApplication>

#include <optional>

namespace {

// A message may have several lines, one for each thing that is wrong.
int refuse(Console &console, const QString &message)
{
    for (const QString &line : message.split('\n')) {
        console.showMessage(line);
    }
    return ExitWrongUsage;
}

// Qt's parser ends its messages with one.
QString withoutFullStop(const QString &message)
{
    return message.endsWith('.') || message.endsWith(QStringLiteral("。")) ? message.chopped(1)
                                                                           : message;
}

Console::Style styleOf(const PackOptions &options)
{
    return options.json ? Console::Style::Json
        : options.quiet ? Console::Style::Quiet
                        : Console::Style::Full;
}

// Ends the process if an interruption has come. Otherwise does nothing.
void endIfInterrupted(const EarlyInterruption &interruption, Console &console,
                      PrivateDirectory &temporary, OutputGuard *guard = nullptr)
{
    if (const auto cause = interruption.cause()) {
        if (guard) {
            guard->release();
        }
        temporary.remove(); // with the staged folder, if that is there
        console.showMessage(text("interrupted; nothing was made"));
        endAsInterrupted(*cause);
    }
}

int pack(const PackOptions &options, const ProgramHooks &hooks)
{
    Console console(styleOf(options));
    // First of all, because the next step writes to the user's temporary directory.
    if (const auto refusal = checkFolder(options.folder)) {
        return refuse(console, refusal->message);
    }
    InterruptWatcher watcher; // from here on, an interruption lets the program clean up first
    PrivateDirectory temporary;
    if (!temporary.isValid()) {
        return refuse(
            console,
            text("cannot create a private temporary directory: %1").arg(temporary.errorString()));
    }
    if (!temporary.enter()) {
        return refuse(
            console,
            text("the system does not use %1 as the temporary directory").arg(temporary.path()));
    }
    hooks.fillTemporaryDirectory(temporary.path());
    std::optional<EarlyInterruption> interruption(std::in_place, watcher);
    const auto isStopped = [&interruption] {
        return interruption->hasCome();
    };
    auto prepared = prepareJob(options, isStopped);
    endIfInterrupted(*interruption, console, temporary);
    if (const auto *refusal = std::get_if<Refusal>(&prepared)) {
        return refuse(console, refusal->message);
    }
    PreparedJob &inputs = *std::get_if<PreparedJob>(&prepared);
    if (const auto refusal = hooks.prepareProgram(inputs)) {
        return refuse(console, refusal->message);
    }
    if (options.profile == Profile::FastStart) {
        if (const auto refusal = provideFastArchiver(temporary.path())) {
            return refuse(console, refusal->message);
        }
    }
    // After everything that can be refused, so that a refusal leaves no new folder.
    if (const auto refusal = makeOutputDirectory(inputs.product)) {
        return refuse(console, refusal->message);
    }
    OutputGuard guard(inputs.product, inputs.madeName());
    if (const QString reason = guard.hold(); !reason.isEmpty()) {
        return refuse(console, reason);
    }
    const auto refusal = stageJob(inputs, {temporary.path(), guard.directory()}, isStopped);
    endIfInterrupted(*interruption, console, temporary, &guard);
    interruption.reset(); // from here on, the job is told
    if (refusal) {
        return refuse(console, refusal->message);
    }
    TerminalJob job(inputs, guard, temporary, console, {hooks.keepIcon, hooks.checkProduct});
    QObject::connect(&watcher, &InterruptWatcher::interrupted, &job, &TerminalJob::interrupt);
    QObject::connect(&job, &TerminalJob::ended, qApp, &QCoreApplication::exit,
                     Qt::QueuedConnection);
    job.start();
    for (const QString &warning : inputs.warnings) {
        console.showWarning(warning);
    }
    for (const QString &remark : inputs.remarks) {
        console.showInformation(remark);
    }
    return QCoreApplication::exec();
}

} // namespace

int runTerminalProgram(int argc, char *argv[], const ProgramHooks &hooks)
{
    prepareTerminal();
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    setLanguage(languageIn(arguments).value_or(systemLanguage()));

    const CommandLine line = parseCommandLine(arguments);
    if (line.language && *line.language != language()) { // from the configuration file
        setLanguage(*line.language);
    }
    switch (line.action) {
    case CommandLine::Action::ShowHelp:
        writeText(Stream::Output, helpText(language()));
        return ExitDone;
    case CommandLine::Action::ShowVersion:
        writeText(Stream::Output, line.message);
        return ExitDone;
    case CommandLine::Action::Refuse: {
        Console console(Console::Style::Full);
        return refuse(console,
                      text("%1; --help shows the usage").arg(withoutFullStop(line.message)));
    }
    case CommandLine::Action::Inspect:
    case CommandLine::Action::Verify:
    case CommandLine::Action::Extract: {
        Console console(line.quiet ? Console::Style::Quiet : Console::Style::Full);
        return runReadingCommand(line, console);
    }
    case CommandLine::Action::Pack:
        break;
    }
    return pack(line.pack, hooks);
}
