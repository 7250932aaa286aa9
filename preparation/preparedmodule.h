// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "preparation/mainprogram.h"
#include "preparation/settingstext.h"

#include <QString>

#include <optional>
#include <vector>

// What is changed in the self-extractor module for one job.
struct ModulePlan
{
    ProgramKind kind = ProgramKind::Windows;
    QList<Setting> settings = {};                   // none: the module gets no resource SETTINGS
    std::vector<pe::VersionResource> identity = {}; // replaces the module's version resources
    QString module = QStringLiteral(":/resources/7zS2.sfx"); // the bundle's, or another one
};

// Writes the module to the file "7zS2.sfx" in `directory`, which must not exist yet: there the
// engine finds it and uses it as it is. Returns a message if that fails. A plan that changes nothing
// gives the module's own bytes.
//
// A changed module has no check sum: it would be wrong as soon as the engine appends the archive.
//
// A module that a builder brought may be an older one, which would ignore settings. So it is refused
// if there are any.
std::optional<Message> writePreparedModule(const ModulePlan &plan, const QString &directory);
