// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QFlags>
#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

// The one table of the options. The parser, the help, the configuration file, the manual page and
// the completions of the shells are made from it.

enum class OptionId {
    Main,
    Output,
    Name,
    Icon,
    Level,
    Method,
    Profile,
    Console,
    Cwd,
    Set,
    Arguments,
    Title,
    Silent,
    Keep,
    KeepVerify,
    Exclude,
    Mtime,
    Reproducible,
    NoVerify,
    Quiet,
    Json,
    Language,
    Config,
    Version,
    Help
};

inline size_t qHash(OptionId id, size_t seed = 0)
{
    return ::qHash(static_cast<int>(id), seed);
}

enum CommandFlag { Pack = 1, Inspect = 2, Verify = 4, Extract = 8, EveryCommand = 15 };
Q_DECLARE_FLAGS(Commands, CommandFlag)
Q_DECLARE_OPERATORS_FOR_FLAGS(Commands)

enum class OptionKind {
    Switch, // has no value
    Value,  // the last one counts
    List    // can be given several times
};

// What a value names, for the completions and for relative paths in a configuration file.
enum class ValueKind { Text, Word, File, Folder };

struct OptionInfo
{
    OptionId id = OptionId::Help;
    const char *name = ""; // the long one, without dashes; also the key in the configuration file
    char shortName = 0;    // 0 if there is none
    OptionKind kind = OptionKind::Switch;
    ValueKind valueKind = ValueKind::Text;
    const char *valueName = ""; // in the help; empty for a switch
    const char *words = "";     // for ValueKind::Word: the possible values, separated by "|"
    Commands commands;
    bool isKey = false; // allowed in a configuration file
    const char *english = "";
    const char *chinese = "";
};

const QList<OptionInfo> &options();
const OptionInfo &option(OptionId id);

// Returns nullptr if there is no such long name.
const OptionInfo *optionNamed(const QString &name);

// The possible values of an option with words.
QStringList wordsOf(const OptionInfo &option);

// The values that were given, in their order. A switch that is on has one value.
using OptionValues = QHash<OptionId, QStringList>;

// The last value; empty if there is none.
QString lastValue(const OptionValues &values, OptionId id);
