// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "cli/commandline.h"
#include "cli/console.h"
#include "cli/exitstatus.h"
#include "cli/inputcheck.h"
#include "cli/interrupt.h"
#include "cli/outputguard.h"
#include "cli/readingcommands.h"
#include "cli/terminal.h"
#include "cli/terminaljob.h"

#include <QCoreApplication>

namespace {

int pack(const CommandLine &line, Console &console)
{
    const auto checked = checkInputs(line);
    if (const auto *refusal = std::get_if<Refusal>(&checked)) {
        console.showMessage(refusal->message);
        return ExitWrongUsage;
    }
    InterruptWatcher watcher; // from here on, an interruption lets the program clean up first
    const PackagingJob &inputs = *std::get_if<PackagingJob>(&checked);
    OutputGuard guard(inputs.outputPath());
    if (const QString reason = guard.hold(); !reason.isEmpty()) {
        console.showMessage(reason);
        return ExitWrongUsage;
    }
    TerminalJob job(inputs, guard, console);
    QObject::connect(&watcher, &InterruptWatcher::interrupted, &job, &TerminalJob::interrupt);
    QObject::connect(&job, &TerminalJob::ended, qApp, &QCoreApplication::exit,
                     Qt::QueuedConnection);
    job.start();
    return QCoreApplication::exec();
}

} // namespace

int main(int argc, char *argv[])
{
    prepareTerminal();
    const QCoreApplication application(argc, argv);

    const CommandLine line = parseCommandLine(QCoreApplication::arguments());
    Console console(line.quiet);
    switch (line.action) {
    case CommandLine::Action::ShowHelp:
    case CommandLine::Action::ShowVersion:
        writeText(Stream::Output, line.message);
        return ExitDone;
    case CommandLine::Action::Refuse:
        console.showMessage(line.message + "; --help shows the usage");
        return ExitWrongUsage;
    case CommandLine::Action::Inspect:
    case CommandLine::Action::Verify:
    case CommandLine::Action::Extract:
        return runReadingCommand(line, console);
    case CommandLine::Action::Pack:
        break;
    }
    return pack(line, console);
}
