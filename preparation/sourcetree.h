// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "preparation/message.h"
#include "preparation/sourceentry.h"
#include "preparation/timerule.h"

#include <QStringList>

#include <variant>

// What is wanted of the tree.
struct TreeOptions
{
    // Which permission bits and attributes the archive gets. The self-extractor uses only Windows'
    // read-only, hidden and system, but all of them are bytes of the product.
    enum class Permissions {
        AsTheyAre,
        // Permission bits are 0755 or 0644 as the owner may execute, 0555 or 0444 if nobody may
        // write. Windows' attributes stay as they are.
        Normal,
        // Permission bits are 0644 or 0444, also on disks that mark every file as executable.
        // Windows' attributes are read-only, hidden and system as they are, and archive.
        Uniform,
    };

    QStringList excludes; // patterns; see Glob
    QString mainProgram;  // its path in the folder, with `/`
    TimeRule times;
    Permissions permissions = Permissions::Normal;
};

struct PlannedFile
{
    QString path;                // in the archive
    QString source;              // in the folder to pack: what a link leads to, otherwise the same
    qint64 size = 0;             // in bytes
    qint64 modified = 0;         // the time to store, in 100 ns since 1970
    std::optional<quint32> mode; // the permission bits to store; not on Windows
    std::optional<quint32> attributes; // the attributes to store; only on Windows
    bool isChanged = false;            // what is to be stored differs from what the source has
    bool mustNotBeLinked = false;      // see SourceEntry
};

struct PlannedFolder
{
    QString path;
    qint64 modified = 0;
    std::optional<quint32> mode;
    std::optional<quint32> attributes;
};

// What goes into a product.
struct SourcePlan
{
    QString folder;               // the folder to pack
    QList<PlannedFile> files;     // in the order of their paths
    QList<PlannedFolder> folders; // every folder comes after the one that contains it
    QString mainProgram;          // as the disk spells it
    QList<Message> warnings;
    qint64 totalBytes = 0; // of all files
    // Whether the archive cannot be made of the folder itself: something is left out, followed or
    // changed.
    bool needsStaging = false;

    // Bytes that have to be copied into a staged tree; the rest can be hard links if `canLink`.
    qint64 bytesToCopy(bool canLink) const;
};

// Why nothing is packed. There are at most 20 messages; then one says how many more there are.
struct TreeProblems
{
    QList<Message> messages;
};

// Decides what goes into the product. Looks at the entries only, not at the disk.
//
// Links that stay in the folder are followed. Refused are other links, devices, pipes, sockets,
// entries that cannot be read, names that Windows cannot hold, names that are the same on Windows,
// broken patterns, and patterns that leave nothing or remove the main program.
std::variant<SourcePlan, TreeProblems>
planTree(const QString &folder, const QList<SourceEntry> &entries, const TreeOptions &options);
