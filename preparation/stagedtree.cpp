// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "preparation/stagedtree.h"

#include "preparation/windowsname.h"

#include <QTemporaryDir>
#include <QThread>

namespace {

// Scanners hold new files for a moment on Windows, and then a file cannot be removed.
constexpr int removalAttempts = 10;
constexpr unsigned long removalPauseMs = 100;

} // namespace

std::optional<Message> StagedTree::create(const SourcePlan &plan, const Progress &progress)
{
    QTemporaryDir folder(m_parent + "/.kestrelpack-tree-XXXXXX");
    if (!folder.isValid()) {
        return Message{"cannot make a folder in %1: %2", {m_parent, folder.errorString()}};
    }
    folder.setAutoRemove(false);
    m_path = folder.path();
    std::optional<Message> error = makeFolders(plan);
    if (!error) {
        error = makeFiles(plan, progress);
    }
    if (!error) {
        error = finishFolders(plan);
    }
    if (error) {
        remove();
    }
    return error;
}

std::optional<Message> StagedTree::makeFolders(const SourcePlan &plan)
{
    for (const PlannedFolder &folder : plan.folders) {
        const QString path = m_path + '/' + folder.path;
        const QString error = makeFolder(path);
        if (!error.isEmpty()) {
            return Message{"cannot make the folder %1 for packing: %2",
                           {shownPath(folder.path), error}};
        }
        m_folders.append(path);
    }
    return std::nullopt;
}

std::optional<Message> StagedTree::makeFiles(const SourcePlan &plan, const Progress &progress)
{
    const CopyProgress onCopied = [&](qint64 bytes) {
        m_doneBytes += bytes;
        m_copiedBytes += bytes;
        m_wasStopped = m_wasStopped || !progress(m_doneBytes);
        return !m_wasStopped;
    };
    for (const PlannedFile &file : plan.files) {
        m_wasStopped = m_wasStopped || !progress(m_doneBytes);
        const QString error = m_wasStopped
            ? QStringLiteral("stopped")
            : makeFile(plan.folder + '/' + file.source, file, onCopied);
        if (!error.isEmpty()) {
            return Message{"cannot copy %1 for packing: %2", {shownPath(file.path), error}};
        }
    }
    return std::nullopt;
}

QString StagedTree::makeFile(const QString &source, const PlannedFile &file,
                             const CopyProgress &progress)
{
    const QString target = m_path + '/' + file.path;
    if (!file.isChanged && !file.mustNotBeLinked && linkFile(source, target)) {
        m_files.append({target, false});
        m_doneBytes += file.size;
        ++m_linkedFiles;
        return {};
    }
    // The list has the file before it exists, so that a half copy is removed, too.
    m_files.append({target, true});
    return copyFile(source, target, file, progress);
}

// From the innermost to the outermost, because each new entry changes its folder's time.
std::optional<Message> StagedTree::finishFolders(const SourcePlan &plan)
{
    for (qsizetype i = plan.folders.size(); i-- > 0;) {
        const PlannedFolder &folder = plan.folders[i];
        const QString error = finishFolder(m_path + '/' + folder.path, folder);
        if (!error.isEmpty()) {
            return Message{"cannot finish the folder %1 for packing: %2",
                           {shownPath(folder.path), error}};
        }
    }
    return std::nullopt;
}

bool StagedTree::removeOnce()
{
    for (const QString &folder : m_folders) {
        openFolderForRemoval(folder);
    }
    m_files.removeIf([](const MadeFile &file) { return removeStagedFile(file.path, file.isCopy); });
    while (!m_folders.isEmpty() && removeStagedFolder(m_folders.constLast())) {
        m_folders.removeLast();
    }
    return m_files.isEmpty() && m_folders.isEmpty() && removeStagedFolder(m_path);
}

bool StagedTree::remove()
{
    for (int attempt = 0; !m_path.isEmpty(); ++attempt) {
        if (removeOnce()) {
            m_path.clear();
        } else if (attempt + 1 == removalAttempts) {
            return false;
        } else {
            QThread::msleep(removalPauseMs);
        }
    }
    return true;
}
