// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "preparation/sourcetree.h"
#include "preparation/stagedfile.h"

#include <QStringList>

#include <optional>

// A private copy of the folder to pack as a plan describes it: hard links where they are possible,
// copies elsewhere. The source never changes. Use it on one thread.
class StagedTree
{
public:
    // Is called before each file, and during large copies, with the bytes that are done. Returns
    // false to stop.
    using Progress = std::function<bool(qint64 bytesDone)>;

    // The tree will be made in a new folder inside the existing folder `parent`.
    explicit StagedTree(const QString &parent) : m_parent(parent) {}
    StagedTree(const StagedTree &) = delete;
    StagedTree &operator=(const StagedTree &) = delete;
    // Calls remove().
    ~StagedTree() { remove(); }

    // Makes the tree. Returns nothing, or what is wrong, with the entry's name; the tree is then
    // removed again. Call it once.
    std::optional<Message> create(const SourcePlan &plan, const Progress &progress);

    // The folder to pack; empty before create().
    QString path() const { return m_path; }
    // Whether `progress` has stopped create().
    bool wasStopped() const { return m_wasStopped; }
    qint64 copiedBytes() const { return m_copiedBytes; }
    qsizetype linkedFiles() const { return m_linkedFiles; }

    // Removes exactly what create() has made. Returns false if something is left.
    bool remove();
    // From now on the tree belongs to the caller, who removes it with everything in it.
    void leave() { m_path.clear(); }

private:
    struct MadeFile
    {
        QString path;
        bool isCopy = false;
    };

    std::optional<Message> makeFolders(const SourcePlan &plan);
    std::optional<Message> makeFiles(const SourcePlan &plan, const Progress &progress);
    QString makeFile(const QString &source, const PlannedFile &file, const CopyProgress &progress);
    std::optional<Message> finishFolders(const SourcePlan &plan);
    bool removeOnce();

    const QString m_parent;
    QString m_path;
    QList<MadeFile> m_files;
    QStringList m_folders;
    bool m_wasStopped = false;
    qint64 m_doneBytes = 0;
    qint64 m_copiedBytes = 0;
    qsizetype m_linkedFiles = 0;
};
