// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <optional>
#include <utility>

// Writes 7z archives (7-Zip, DOC/7zFormat.txt) whose every field can be forged, while the check
// sums are right. An ArchivePlan is honest when it is made; a test then changes what it wants to.
namespace forge {

struct File
{
    QString name;
    QByteArray content; // a folder's is empty
    bool isFolder = false;
    bool isAnti = false; // 7-Zip's sign for "remove this one"
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
    QList<quint64> packedInputs = {};              // written only if there are several
    QList<quint64> unpackSizes = {};               // one a coder
};

struct ArchivePlan
{
    explicit ArchivePlan(const QList<File> &listed);

    QByteArray packed; // what lies between the start header and the header
    quint64 packOffset = 0;
    quint64 packCount = 1;
    QList<quint64> packSizes;
    quint64 folderCount = 1;
    QList<Folder> folders;
    QList<quint64> streamCounts; // files with content, by folder
    QList<quint64> streamSizes;  // of all but each folder's last
    QList<quint32> checkSums;
    QList<File> files;
    quint64 fileCount = 0;
    bool hasNames = true;
    QByteArray furtherProperties; // of the files, as they stand
};

// 7-Zip's form of a number: the first byte's leading ones count the bytes that follow.
QByteArray number(quint64 value);
// A property: its id, its length, its content.
QByteArray property(int id, const QByteArray &content);

QByteArray headerOf(const ArchivePlan &plan);
// The start header, the packed streams and the header; check sums right.
QByteArray archiveOf(const QByteArray &packed, const QByteArray &header);
QByteArray archiveOf(const ArchivePlan &plan);
// An archive with this start header alone, its check sum right; `rest` lies behind it.
QByteArray startHeader(quint64 headerOffset, quint64 headerSize, quint32 headerSum,
                       const QByteArray &rest);
// A header that says: the real one is the stream at `offset`, packed by this folder.
QByteArray encodedHeader(const Folder &folder, quint64 offset, quint64 packSize, quint32 checkSum);

quint32 checkSum(const QByteArray &bytes);

} // namespace forge
