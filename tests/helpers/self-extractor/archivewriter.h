// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <optional>
#include <utility>

// Writes 7z archives (7-Zip, DOC/7zFormat.txt). Every field can be forged; the check sums are still
// correct. A new ArchivePlan is valid. A test then changes the fields it wants.
namespace forge {

struct File
{
    QString name;
    QByteArray content; // empty for a folder
    bool isFolder = false;
    bool isAnti = false; // 7-Zip's mark for "remove this one"
    std::optional<quint32> attributes = std::nullopt;
};

struct Coder
{
    QByteArray method = QByteArray(1, '\0'); // Copy
    QByteArray properties = {};
    quint64 inputs = 1;
    quint64 outputs = 1;
};

struct Folder
{
    QList<Coder> coders{Coder()};
    QList<std::pair<quint64, quint64>> bonds = {}; // input, output
    QList<quint64> packedInputs = {};              // written only if there is more than one
    QList<quint64> unpackSizes = {};               // one for each coder
};

struct ArchivePlan
{
    explicit ArchivePlan(const QList<File> &listed);

    QByteArray packed; // the bytes between the start header and the header
    quint64 packOffset = 0;
    quint64 packCount = 1;
    QList<quint64> packSizes;
    quint64 folderCount = 1;
    QList<Folder> folders;
    QList<quint64> streamCounts; // files with content, by folder
    QList<quint64> streamSizes;  // all sizes except that of each folder's last file
    QList<quint32> checkSums;
    QList<File> files;
    quint64 fileCount = 0;
    bool hasNames = true;
    QByteArray furtherProperties; // further properties of the files, written as they are
};

// 7-Zip's encoding of a number: the leading one bits of the first byte count the bytes that follow.
QByteArray number(quint64 value);
// A property: its id, its length, its content.
QByteArray property(int id, const QByteArray &content);

QByteArray headerOf(const ArchivePlan &plan);
// The start header, the packed streams and the header, with correct check sums.
QByteArray archiveOf(const QByteArray &packed, const QByteArray &header);
QByteArray archiveOf(const ArchivePlan &plan);
// This start header, with a correct check sum, followed by `rest`.
QByteArray startHeader(quint64 headerOffset, quint64 headerSize, quint32 headerSum,
                       const QByteArray &rest);
// A header that says: the real header is the stream at `offset`, packed by this folder.
QByteArray encodedHeader(const Folder &folder, quint64 offset, quint64 packSize, quint32 checkSum);

quint32 checkSum(const QByteArray &bytes);

} // namespace forge
