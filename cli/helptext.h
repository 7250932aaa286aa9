// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "cli/language.h"

#include <QString>
#include <QStringList>

// The text of --help.
QString helpText(Language language);

// Breaks an English text into lines of at most `width` characters.
QStringList wrapped(const QString &text, int width);
