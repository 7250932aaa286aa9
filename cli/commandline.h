// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QStringList>

// What the user asked for on the command line, not yet compared with the disk.
struct CommandLine
{
    enum class Action { Pack, ShowHelp, ShowVersion, Refuse };

    Action action = Action::Pack;
    QString message; // for Refuse: one English sentence; for ShowHelp and ShowVersion: the text

    QString folder;
    QString mainProgram; // empty: to be found
    QString outputDir = QStringLiteral(".");
    QString iconPath;    // empty: the main program's own icon
    int levelIndex = 3;  // in the list of compression levels; 3 is "normal"
    int methodIndex = 0; // in the list of methods; 0 is LZMA
    bool quiet = false;
};

// Reads the arguments, the program's own name first.
CommandLine parseCommandLine(const QStringList &arguments);
