// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "preparation/message.h"

#include <QString>

#include <optional>

// The languages of this program's messages, and of the engine's log when this program shows it.
enum class Language { English, Chinese };

// Chinese if the user's system speaks Chinese, otherwise English.
Language systemLanguage();

// "en" or "zh", in capitals or not. Nothing for another name.
std::optional<Language> languageNamed(const QString &name);

// From now on, text() and the engine's tr() give texts in this language. Until the first call,
// text() gives English ones and tr() Chinese ones. Needs an application object; no job may run.
void setLanguage(Language language);

// The language that was set; English until then.
Language language();

// The same for a text of inspection/, which may have a detail after a colon: "the disk is full: C:".
QString textOfFinding(const QString &english);

// A message of preparation/ in the current language.
QString text(const Message &message);

// The English text of a message in the current language, with its placeholders.
// cli/messagetexts.cpp has the Chinese ones.
QString text(const char *english);
