// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "cli/prepareprogram.h"

#include "cli/fullmodule.h"
#include "cli/language.h"
#include "preparation/identity.h"
#include "preparation/preparedmodule.h"
#include "preparation/programicon.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {

ProgramKind kindFor(ConsoleChoice choice, const MainProgram &program)
{
    switch (choice) {
    case ConsoleChoice::Yes:
        return ProgramKind::Console;
    case ConsoleChoice::No:
        return ProgramKind::Windows;
    case ConsoleChoice::Auto:
        break;
    }
    return kindOf(program.header);
}

// Empty for the application's folder, where the self-extractor starts programs anyway.
QString workingFolderFor(WorkingFolderChoice choice, ProgramKind kind)
{
    switch (choice) {
    case WorkingFolderChoice::Caller:
        return QStringLiteral("caller");
    case WorkingFolderChoice::Exe:
        return QStringLiteral("exe");
    case WorkingFolderChoice::App:
        return {};
    case WorkingFolderChoice::Auto:
        break;
    }
    return kind == ProgramKind::Console ? QStringLiteral("caller") : QString();
}

QList<Setting> settingsFor(const PackOptions &options, const QString &mainProgram, ProgramKind kind,
                           const QString &product)
{
    QList<Setting> settings;
    const auto add = [&settings](const char *key, const QString &value) {
        if (!value.isEmpty()) {
            settings.append({QString::fromLatin1(key), value});
        }
    };
    if (mainProgram.contains('/')) { // the block can only name a file
        add("Program", mainProgram);
    }
    add("Title", options.title);
    add("Arguments", options.arguments);
    add("WorkingFolder", workingFolderFor(options.workingFolder, kind));
    add("Silent", options.silent ? QStringLiteral("1") : QString());
    if (options.keepDays != 0) {
        add("Keep", QString::number(options.keepDays));
        add("KeepVerify", options.keepVerify ? QStringLiteral("1") : QString());
        add("Product", product);
    }
    return settings;
}

// Returns the path of the icon file, or an empty text if the engine has to find the icon itself.
QString writeIcon(const QString &mainProgram)
{
    const QByteArray icon = iconFileOfProgram(mainProgram);
    QFile file(QDir::temp().filePath("main-program.ico"));
    return !icon.isEmpty() && file.open(QIODevice::WriteOnly) && file.write(icon) == icon.size()
            && file.flush()
        ? file.fileName()
        : QString();
}

} // namespace

std::optional<Refusal> prepareProgram(PreparedJob &prepared)
{
    const PackOptions &options = prepared.options;
    const QString &name = prepared.job.mainExeName;
    const auto about = [&name](const Message &message) {
        return text("the main program %1: %2").arg(name, text(message));
    };
    const auto read = readMainProgram(prepared.job.mainExePath());
    if (const auto *message = std::get_if<Message>(&read)) {
        return Refusal{about(*message)};
    }
    const MainProgram &program = *std::get_if<MainProgram>(&read);
    const Startability startability = startabilityOf(program.header);
    if (!startability.canStart) {
        return Refusal{about(startability.remark.value_or(Message()))};
    }
    if (options.keepDays != 0 && program.asksForRights) {
        return Refusal{about({"--keep is not for it: it asks for administrator's rights, and what "
                              "the user can change must not run with them",
                              {}})};
    }
    if (startability.remark) {
        // 64-bit Windows, which the produced file needs, starts programs for 32 bits everywhere.
        const bool isUsual = program.header.machine == pe::machineX86;
        (isUsual ? prepared.remarks : prepared.warnings).append(about(*startability.remark));
    }
    if (program.hasDamagedIdentity) {
        prepared.warnings.append(
            text("the version information of the main program %1 cannot be read").arg(name));
    }

    const auto identity
        = identityOf(program.identity, QFileInfo(prepared.product).fileName(), options.fields);
    if (const auto *message = std::get_if<Message>(&identity)) {
        return Refusal{text(*message)};
    }
    const ProgramKind kind = kindFor(options.console, program);
    const auto &resources = std::get<std::vector<pe::VersionResource>>(identity);
    const auto module = moduleFor(options);
    if (const auto *refusal = std::get_if<Refusal>(&module)) {
        return *refusal;
    }
    const ModulePlan plan{kind, settingsFor(options, name, kind, productOf(resources, name)),
                          resources, *std::get_if<QString>(&module)};
    if (const auto message = writePreparedModule(plan, QDir::tempPath())) {
        return Refusal{text(*message)};
    }
    if (prepared.job.iconPath.isEmpty() && !options.noIcon) {
        prepared.job.iconPath = writeIcon(prepared.job.mainExePath());
    }
    return std::nullopt;
}
