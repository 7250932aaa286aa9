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

// Most days that the self-extractor takes for "Keep".
constexpr int maxKeepDays = 3650;

// Returns the content of the resource, or why a setting is refused; the limits are those of the
// self-extractor. Nothing is escaped: a value is everything between the first and the last quote of
// its line. So a value may contain quotes, but no line end. Quotes in "Arguments" must be closed.
// "KeepVerify" needs "Keep".
// Whether "Program" and "Folder" are names that Windows can hold is not checked.
std::variant<QByteArray, Message> settingsText(const QList<Setting> &settings);
