// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QStringList>

// The user's request from the command line. Its paths are not yet checked against the disk.
struct CommandLine
{
    enum class Action { Pack, Inspect, Verify, Extract, ShowHelp, ShowVersion, Refuse };

    Action action = Action::Pack;
    QString message; // for Refuse: one English sentence; for ShowHelp and ShowVersion: the text

    QString file;        // for Inspect, Verify and Extract
    bool asJson = false; // for Inspect

    QString folder;
    QString mainProgram; // empty: the only program of the folder
    // For Extract: the new folder; empty: named after the file.
    QString outputDir = QStringLiteral(".");
    QString iconPath;    // empty: the main program's icon
    int levelIndex = 3;  // in the list of compression levels; 3 is "normal"
    int methodIndex = 0; // in the list of methods; 0 is LZMA
    bool quiet = false;
};

// Reads the arguments; the first one is the name of this program. Wrong arguments give
// Action::Refuse.
CommandLine parseCommandLine(const QStringList &arguments);
