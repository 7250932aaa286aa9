// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "preparation/settingstext.h"

#include "helpers/self-extractor/start/settings.h"
#include "preparation/controlcharacters.h"

#include <optional>

namespace {

constexpr auto maxArguments = static_cast<qsizetype>(sfx::maxArguments);
constexpr auto maxSettingsSize = static_cast<qsizetype>(sfx::maxSettingsSize);
static_assert(maxKeepDays == sfx::maxKeepDays);

// By the rules of CommandLineToArgvW: a quote after an odd number of backslashes is a character. An
// open quote would swallow the caller's arguments.
bool hasOpenQuote(const QString &arguments)
{
    bool isOpen = false;
    int backslashes = 0;
    for (const QChar unit : arguments) {
        if (unit == u'"' && backslashes % 2 == 0) {
            isOpen = !isOpen;
        }
        backslashes = unit == u'\\' ? backslashes + 1 : 0;
    }
    return isOpen;
}

bool isKnown(const QString &key)
{
    static const QStringList keys{"Program", "Folder", "Title",      "Arguments", "WorkingFolder",
                                  "Silent",  "Keep",   "KeepVerify", "Product"};
    return keys.contains(key);
}

bool isNumberOfDays(const QString &value)
{
    const int days = value.toInt();
    return days > 0 && days <= maxKeepDays && QString::number(days) == value;
}

std::optional<Message> reasonToRefuse(const Setting &setting)
{
    const auto &[key, value] = setting;
    if (!isKnown(key)) {
        return Message{"the self-extractor does not know the setting %1", {key}};
    }
    if (!isCleanText(value)) {
        return Message{"%1 contains a line end or another control character", {key}};
    }
    if (key == "Arguments" && value.size() > maxArguments) {
        return Message{"%1 has %2 characters; the self-extractor takes at most %3",
                       {key, QString::number(value.size()), QString::number(maxArguments)}};
    }
    if (key == "Arguments" && hasOpenQuote(value)) {
        return Message{"%1 has a quote that is not closed", {key}};
    }
    if (key == "WorkingFolder" && value != "app" && value != "caller" && value != "exe") {
        return Message{"%1 must be app, caller or exe", {key}};
    }
    if (key == "Keep" && !isNumberOfDays(value)) {
        return Message{"%1 must be a number from 1 to %2", {key, QString::number(maxKeepDays)}};
    }
    if ((key == "Silent" || key == "KeepVerify") && value != "0" && value != "1") {
        return Message{"%1 must be 0 or 1", {key}};
    }
    if ((key == "Program" || key == "Folder") && value.isEmpty()) {
        return Message{"%1 is empty", {key}};
    }
    return std::nullopt;
}

} // namespace

std::variant<QByteArray, Message> settingsText(const QList<Setting> &settings)
{
    QByteArray text;
    QStringList keys;
    for (const Setting &setting : settings) {
        if (const auto reason = reasonToRefuse(setting)) {
            return *reason;
        }
        if (keys.contains(setting.key)) {
            return Message{"%1 is set twice", {setting.key}};
        }
        keys.append(setting.key);
        text += setting.key.toUtf8() + "=\"" + setting.value.toUtf8() + "\"\n";
    }
    if (keys.contains("KeepVerify") && !keys.contains("Keep")) {
        return Message{"%1 needs %2", {"KeepVerify", "Keep"}};
    }
    if (text.size() > maxSettingsSize) {
        return Message{"the settings have %1 bytes together; the self-extractor takes at most %2",
                       {QString::number(text.size()), QString::number(maxSettingsSize)}};
    }
    return text;
}
