// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "cli/configfile.h"

#include "cli/language.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>

#include <optional>

namespace {

// "yes" gives true, "no" gives false, other texts nothing.
std::optional<bool> truthOf(const QString &value)
{
    static const QStringList yes{"true", "yes", "on", "1"};
    static const QStringList no{"false", "no", "off", "0"};
    if (yes.contains(value, Qt::CaseInsensitive)) {
        return true;
    }
    return no.contains(value, Qt::CaseInsensitive) ? std::optional(false) : std::nullopt;
}

QString absolute(const OptionInfo &option, const QString &value, const QDir &folder)
{
    const bool isPath = option.valueKind == ValueKind::File
        || option.valueKind == ValueKind::Folder;
    const bool isNone = option.id == OptionId::Icon && value == QLatin1String("none");
    return isPath && !isNone && !value.isEmpty() ? folder.absoluteFilePath(value) : value;
}

// Adds the value of one key. Returns a message if it does not fit, otherwise nothing.
QString readKey(const OptionInfo &option, const QVariant &value, const QString &path,
                OptionValues &values)
{
    const auto name = QLatin1String(option.name);
    const bool isText = value.typeId() == QMetaType::QString;
    if (!isText && value.typeId() != QMetaType::QStringList) {
        return text("%1: the value of the key %2 is no text").arg(path, name);
    }
    if (!isText && option.kind != OptionKind::List) {
        return text("%1: the key %2 takes one value; a value with commas needs double quotes")
            .arg(path, name);
    }
    if (option.kind == OptionKind::Switch) {
        const auto truth = truthOf(value.toString());
        if (!truth) {
            return text("%1: the key %2 takes yes or no").arg(path, name);
        }
        if (*truth) {
            values.insert(option.id, {QString()});
        }
        return {};
    }
    QStringList texts = isText ? QStringList{value.toString()} : value.toStringList();
    const QDir folder(QFileInfo(path).absolutePath());
    for (QString &one : texts) {
        one = absolute(option, one, folder);
    }
    values.insert(option.id, texts);
    return {};
}

} // namespace

std::variant<OptionValues, QString> readConfigFile(const QString &path)
{
    // QSettings takes a missing file for an empty one.
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly)) {
        return text("the configuration file %1 cannot be read").arg(path);
    }
    file.close();
    const QSettings settings(path, QSettings::IniFormat);
    OptionValues values;
    for (const QString &key : settings.allKeys()) {
        const OptionInfo *const option = optionNamed(key);
        if (!option || !option->isKey || !option->commands.testFlag(Pack)) {
            return text("%1: there is no key %2").arg(path, key);
        }
        const QString message = readKey(*option, settings.value(key), path, values);
        if (!message.isEmpty()) {
            return message;
        }
    }
    if (settings.status() != QSettings::NoError) {
        return text("%1: this is no INI file: each line needs a key, an equals sign and a value")
            .arg(path);
    }
    return values;
}
