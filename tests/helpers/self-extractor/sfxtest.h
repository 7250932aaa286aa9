// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/unpacking/unpacker.h"
#include "tests/helpers/self-extractor/memorysource.h"

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QStringList>

// Files by path. The name of a folder ends with a slash, and it has no content.
using Tree = QMap<QString, QByteArray>;

// Collects the unpacked files. `isConsistent` becomes false if calls come in a wrong order.
class TreeSink final : public sfx::UnpackSink
{
public:
    Tree tree;
    QMap<QString, std::uint64_t> modified;
    QStringList order; // of the calls that create something
    bool isConsistent = true;

    sfx::Status begin(std::uint64_t totalBytes, std::uint32_t entries) override;
    sfx::Status makeFolder(const sfx::Entry &folder) override;
    sfx::Status beginFile(const sfx::Entry &file) override;
    sfx::Status write(const std::uint8_t *data, std::size_t size) override;
    sfx::Status endFile(const sfx::Entry &file) override;
    sfx::Status finishFolder(const sfx::Entry &folder) override;

private:
    QString m_open;
};

QString pathOf(const sfx::Entry &entry);

// Upper case by Qt's tables, for the check of paths.
void upperCase(char16_t *text, std::size_t size);

// Opens, checks and unpacks the archive that begins at `offset` of `bytes`.
sfx::Status unpackBytes(const QByteArray &bytes, std::uint64_t offset, Tree &tree,
                        const QString &program = QStringLiteral("main.exe"));

// Writes a tree into an existing folder.
bool writeTree(const QString &folder, const Tree &tree);
// Packs the content of a folder with the archiver and these switches. Returns an empty array on
// failure.
QByteArray pack(const QString &folder, const QStringList &switches);
QByteArray packTree(const Tree &tree, const QStringList &switches);

// Machine code, sound and text, so that the archiver chooses its filters itself.
Tree mixedTree();
// Reproducible noise.
QByteArray noise(qsizetype size, quint32 seed);

// Recomputes the checksums of an archive's end header and start header.
void resealArchive(QByteArray &archive);
// Recomputes only the start header's own checksum.
void resealStart(QByteArray &archive);
