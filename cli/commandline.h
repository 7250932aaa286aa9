// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "cli/language.h"
#include "cli/packoptions.h"

#include <QString>
#include <QStringList>

#include <optional>

// The user's request from the command line. Its paths are not yet checked against the disk.
struct CommandLine
{
    enum class Action { Pack, Inspect, Verify, Extract, ShowHelp, ShowVersion, Refuse };

    Action action = Action::Pack;
    QString message; // for Refuse: one sentence; for ShowVersion: the text

    QString file;                     // for Inspect, Verify and Extract
    QString outputDir;                // for Extract: the new folder; empty: named after the file
    bool asJson = false;              // for Inspect
    bool quiet = false;               // for Inspect, Verify and Extract
    std::optional<Language> language; // nothing: the system's

    PackOptions pack; // for Pack
};

// Reads the arguments; the first one is the name of this program. Reads the configuration file too,
// if one is named. Wrong arguments give Action::Refuse.
CommandLine parseCommandLine(const QStringList &arguments);

// The language that the arguments ask for, even if they are wrong otherwise.
std::optional<Language> languageIn(const QStringList &arguments);
