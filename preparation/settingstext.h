// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "preparation/message.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <variant>

// One line of the self-extractor's resource SETTINGS: Key="value".
struct Setting
{
    QString key;
    QString value;
};

// Limits of the reader.
constexpr qsizetype maxSettingsSize = 64 * 1024; // bytes of the whole text
constexpr qsizetype maxArgumentsLength = 8191;   // UTF-16 units of the value of "Arguments"

// Returns the content of the resource, or why a setting is refused. Nothing is escaped: a value is
// everything between the first and the last quote of its line. So a value may contain quotes, but
// no line end. Quotes in "Arguments" must be closed. Whether "Program" and "Folder" are names that Windows can hold is not checked.
std::variant<QByteArray, Message> settingsText(const QList<Setting> &settings);
