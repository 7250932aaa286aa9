// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "preparation/settingstext.h"

#include <QStringList>

namespace {

const QStringList &knownKeys()
{
    static const QStringList keys{"Program",   "Folder",        "Title",
                                  "Arguments", "WorkingFolder", "Silent"};
    return keys;
}

bool isOneLine(const QString &value)
{
    return !value.contains(u'\n') && !value.contains(u'\r') && !value.contains(QChar(0));
}

// An empty sentence if the setting is fine.
QString reasonToRefuse(const Setting &setting)
{
    const QString &value = setting.value;
    if (!knownKeys().contains(setting.key)) {
        return QStringLiteral("the self-extractor does not know this setting");
    }
    if (!isOneLine(value)) {
        return QStringLiteral("a line end or a NUL character is not possible here");
    }
    if (!value.isValidUtf16()) {
        return QStringLiteral("the text is not valid Unicode");
    }
    if (setting.key == "Arguments" && value.size() > maxArgumentsLength) {
        return QStringLiteral("it has %1 characters; at most %2 are possible")
            .arg(value.size())
            .arg(maxArgumentsLength);
    }
    if (setting.key == "WorkingFolder" && value != "app" && value != "caller" && value != "exe") {
        return QStringLiteral("the value must be app, caller or exe");
    }
    if (setting.key == "Silent" && value != "0" && value != "1") {
        return QStringLiteral("the value must be 0 or 1");
    }
    if ((setting.key == "Program" || setting.key == "Folder") && value.isEmpty()) {
        return QStringLiteral("the value is empty");
    }
    return {};
}

} // namespace

std::variant<QByteArray, QString> settingsText(const QList<Setting> &settings)
{
    QByteArray text;
    QStringList keys;
    for (const Setting &setting : settings) {
        if (const QString reason = reasonToRefuse(setting); !reason.isEmpty()) {
            return QString(setting.key + ": " + reason);
        }
        if (keys.contains(setting.key)) {
            return QString(setting.key + ": it is there twice");
        }
        keys.append(setting.key);
        text += setting.key.toUtf8() + "=\"" + setting.value.toUtf8() + "\"\n";
    }
    if (text.size() > maxSettingsSize) {
        return QStringLiteral("the settings have %1 bytes together; at most %2 are possible")
            .arg(text.size())
            .arg(maxSettingsSize);
    }
    return text;
}
