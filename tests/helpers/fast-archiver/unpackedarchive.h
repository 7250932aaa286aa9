// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

// One entry of an archive.
struct ArchivedEntry
{
    QString path;
    bool isFolder = false;
    quint64 modified = 0; // in 100 ns since 1601
    quint32 attributes = 0;
    quint32 checkSum = 0; // of a file that is not empty
    quint64 size = 0;
    QByteArray content; // only if the archive was unpacked

    // The entry as one line.
    QString text() const;
};

// An archive that was read with 7-Zip's parser, and unpacked with libzstd and 7-Zip's filter: not
// with our own decoders.
struct UnpackedArchive
{
    QList<ArchivedEntry> entries; // in the archive's order
    QStringList blocks;           // the methods and the size of each solid block
    qsizetype headerSize = 0;     // in the archive
};

enum class Unpacking { HeaderOnly, Everything };

// Returns nothing if the archive is damaged, or if its content does not have its check sums.
std::optional<UnpackedArchive> readArchive(const QByteArray &archive, Unpacking unpacking);

// The entries as lines, in the order of their paths.
QStringList sortedLines(const UnpackedArchive &archive);
