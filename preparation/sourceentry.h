// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QList>
#include <QString>

#include <optional>

// One entry of the folder to pack, as the disk has it. Nothing is followed and nothing is decided.
struct SourceEntry
{
    enum class Kind {
        File,
        Folder,
        Link, // symbolic link or junction
        Device,
        Pipe,
        Socket,
        Unreadable, // `problem` says why; a folder's content is then not listed
    };
    // Where a link ends after all links on the way have been followed.
    enum class Target {
        None,    // not a link
        Inside,  // `target` is the path in the folder; empty for the folder itself
        Outside, // of the folder
        Missing, // nothing is there
        Circle,  // the link leads to itself
    };

    QString path; // from the folder to pack, with `/` between its names
    Kind kind = Kind::File;
    bool nameIsDamaged = false;        // no valid UTF-8; `path` is then only for messages
    qint64 size = 0;                   // in bytes; only of files
    qint64 modified = 0;               // in 100 ns since 1970, UTC
    std::optional<quint32> mode;       // permission bits (07777); not on Windows
    std::optional<quint32> attributes; // Windows' attributes; only there
    // Whether another name for the file (a hard link) would do harm: Windows deletes a read-only
    // file only after the mark has been removed, which all its names share; and cloud drives do not
    // allow it.
    bool mustNotBeLinked = false;
    Target targetKind = Target::None;
    QString target;  // of a link: the path inside, or else the link's own text for messages
    QString problem; // the system's reason; only of Unreadable
};

// The entries of a folder, at any depth, in no particular order.
struct SourceListing
{
    QList<SourceEntry> entries;
    QString error; // why the folder itself cannot be listed; otherwise empty
};
