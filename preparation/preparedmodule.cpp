// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "preparation/preparedmodule.h"

#include "helpers/pe/programedit.h"
#include "platform/nativepath.h"

#include <QDir>
#include <QFile>

namespace {

constexpr std::uint16_t neutralLanguage = 0;

pe::Bytes bytesOf(const QByteArray &text)
{
    return {text.begin(), text.end()};
}

QString textOf(const pe::Error &error)
{
    return QString::fromStdString(error.system.empty() ? error.what
                                                       : error.what + ": " + error.system);
}

// A module that reads settings has the names of their keys in UTF-8 among its data.
bool knowsSettings(const QByteArray &module)
{
    return module.contains("WorkingFolder");
}

QString keysOf(const QList<Setting> &settings)
{
    QStringList keys;
    for (const Setting &setting : settings) {
        keys.append(setting.key);
    }
    return keys.join(", ");
}

std::variant<pe::ProgramEdit, Message> editFor(const ModulePlan &plan)
{
    pe::ProgramEdit edit;
    edit.subsystem = plan.kind == ProgramKind::Console ? pe::subsystemConsole
                                                       : pe::subsystemWindows;
    edit.removedTypes.push_back({std::nullopt, pe::versionType});
    for (const pe::VersionResource &resource : plan.identity) {
        auto content = pe::writeVersionInfo(resource.info);
        if (content.hasError()) {
            return Message{"the version information cannot be written: %1",
                           {textOf(content.error())}};
        }
        edit.resources.push_back({{std::nullopt, pe::versionType},
                                  resource.name,
                                  resource.language,
                                  std::move(content.value())});
    }
    if (!plan.settings.isEmpty()) {
        const auto text = settingsText(plan.settings);
        if (const auto *message = std::get_if<Message>(&text)) {
            return *message;
        }
        edit.resources.push_back({{std::nullopt, pe::rcDataType},
                                  {u"SETTINGS", 0},
                                  neutralLanguage,
                                  bytesOf(std::get<QByteArray>(text))});
    }
    return edit;
}

} // namespace

std::optional<Message> writePreparedModule(const ModulePlan &plan, const QString &directory)
{
    const auto edit = editFor(plan);
    if (const auto *message = std::get_if<Message>(&edit)) {
        return *message;
    }
    const QString path = QDir(directory).filePath("7zS2.sfx");
    QFile module(plan.module);
    if (!plan.settings.isEmpty() && module.open(QIODevice::ReadOnly)
        && !knowsSettings(module.readAll())) {
        return Message{"the self-extractor module that this build brings knows no settings: %1",
                       {keysOf(plan.settings)}};
    }
    module.close();
    if (!module.copy(path)) {
        return Message{"the self-extractor module cannot be written to %1: %2",
                       {QDir::toNativeSeparators(path), module.errorString()}};
    }
    // A copy from the bundle is read-only.
    QFile::setPermissions(path,
                          QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    const pe::NativePath file = toNativePath(path);
    const auto outcome = pe::editProgram(file, file, std::get<pe::ProgramEdit>(edit));
    if (outcome.hasError()) {
        QFile::remove(path);
        return Message{"the self-extractor module cannot be changed: %1",
                       {textOf(outcome.error())}};
    }
    return std::nullopt;
}
