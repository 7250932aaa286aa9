// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "cli/readingcommands.h"

#include "cli/earlyinterruption.h"
#include "cli/exitstatus.h"
#include "cli/language.h"
#include "cli/terminal.h"
#include "inspection/extraction.h"
#include "inspection/report.h"

#include <QFileInfo>
#include <QJsonDocument>

namespace {

int failWith(const QString &path, const Finding &finding, Console &console)
{
    console.showMessage(
        QStringLiteral("%1: %2 (%3)").arg(path, textOfFinding(finding.text)).arg(finding.number));
    return ExitJobFailed;
}

int inspect(ProducedFile &file, const CommandLine &line, Console &console)
{
    FileHashes hashes;
    if (line.asJson) {
        if (const auto finding = checkContent(file, &hashes)) {
            return failWith(line.file, *finding, console);
        }
    }
    const auto facts = programFactsOf(file.file());
    const QJsonObject report = reportOf(file, facts.value_or(ProgramFacts()), hashes);
    writeText(Stream::Output,
              line.asJson ? QString::fromUtf8(QJsonDocument(report).toJson()) : textOf(report));
    return ExitDone;
}

int verify(ProducedFile &file, const CommandLine &line, Console &console)
{
    if (const auto finding = checkContent(file)) {
        return failWith(line.file, *finding, console);
    }
    console.showInformation(text("%1: complete, all checksums are right").arg(line.file));
    return ExitDone;
}

// hello.exe is unpacked into the folder hello.
QString defaultFolder(const QString &file)
{
    const QString name = QFileInfo(file).completeBaseName();
    return name.isEmpty() || QFileInfo(file).suffix().isEmpty() ? QFileInfo(file).fileName() + ".d"
                                                                : name;
}

int extract(ProducedFile &file, const CommandLine &line, Console &console)
{
    const QString folder = line.outputDir.isEmpty() ? defaultFolder(line.file) : line.outputDir;
    switch (obstacleAt(folder)) {
    case ExtractionObstacle::NotAFolder:
        console.showMessage(text("%1 is not a folder").arg(folder));
        return ExitWrongUsage;
    case ExtractionObstacle::NotEmpty:
        console.showMessage(text("the folder %1 is not empty").arg(folder));
        return ExitWrongUsage;
    case ExtractionObstacle::None:
        break;
    }
    const InterruptWatcher watcher;
    EarlyInterruption interruption(watcher);
    const auto finding
        = extractInto(file, folder, [&interruption] { return interruption.hasCome(); });
    if (const auto cause = interruption.cause()) {
        console.showMessage(text("interrupted; nothing was made"));
        endAsInterrupted(*cause);
    }
    if (finding) {
        return failWith(line.file, *finding, console);
    }
    console.showInformation(folder);
    return ExitDone;
}

} // namespace

int runReadingCommand(const CommandLine &line, Console &console)
{
    ProducedFile file;
    if (const QString reason = file.open(line.file); !reason.isEmpty()) {
        console.showMessage(text("cannot open %1: %2").arg(line.file, reason));
        return ExitWrongUsage;
    }
    if (const auto finding = file.check()) {
        return failWith(line.file, *finding, console);
    }
    switch (line.action) {
    case CommandLine::Action::Inspect:
        return inspect(file, line, console);
    case CommandLine::Action::Extract:
        return extract(file, line, console);
    default:
        return verify(file, line, console);
    }
}
