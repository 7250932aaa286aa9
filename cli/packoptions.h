// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "cli/options.h"
#include "preparation/identity.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <variant>

enum class ConsoleChoice { Auto, Yes, No };
enum class WorkingFolderChoice { Auto, App, Caller, Exe };
// FastStart: the archive is made by the archiver in helpers/fast-archiver.
enum class Profile { Default, FastStart, Small };

// The user's request to pack a folder. Its paths are not yet checked against the disk.
struct PackOptions
{
    QString folder;
    QString mainProgram;                  // as it was given; empty: the only program of the folder
    QString output = QStringLiteral("."); // a folder, or the path of the executable
    QString name;                         // the executable's name with ".exe"; empty: by default
    QString iconPath;                     // empty: the main program's icon
    bool noIcon = false;
    int levelIndex = 3;  // in the list of compression levels; 3 is "normal", 0 is "store"
    int methodIndex = 0; // in the list of methods; 0 is LZMA
    Profile profile = Profile::Default;

    ConsoleChoice console = ConsoleChoice::Auto;
    WorkingFolderChoice workingFolder = WorkingFolderChoice::Auto;
    QList<IdentityField> fields; // in the order given
    QString arguments;
    QString title;
    bool silent = false;
    int keepDays = 0; // 0: the executable unpacks at every start
    bool keepVerify = false;

    QStringList excludes;
    QString latestTime; // as timeRuleOf() takes it; empty: none
    bool reproducible = false;

    bool verify = true; // decode the finished executable
    bool quiet = false;
    bool json = false;
};

// Returns a message for the first value that is empty, is none of its option's words, or has a line
// end in it; an empty text if there is none.
QString wrongValue(const OptionValues &values);

// Makes the request from the values of the options. Returns a message if one of them is wrong, or
// if two of them contradict each other.
std::variant<PackOptions, QString> packOptionsFrom(const OptionValues &values,
                                                   const QString &folder);
