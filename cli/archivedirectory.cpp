// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "cli/archivedirectory.h"

#include <QDir>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QSet>

namespace {

constexpr int attempts = 100;
const QString lockEnding = QStringLiteral(".lock");

QString newPath()
{
    return QDir::temp().filePath(
        QStringLiteral("kestrelpack-cli-%1")
            .arg(QRandomGenerator::system()->generate(), 8, 16, QLatin1Char('0')));
}

// The paths of all such directories, and of all locks whose directory is missing, without the
// locks' ending.
QSet<QString> pathsInTemp()
{
    QSet<QString> paths;
    const auto entries
        = QDir::temp().entryInfoList({"kestrelpack-cli-*"},
                                     QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    for (const QFileInfo &entry : entries) {
        const QString path = entry.filePath();
        paths << (path.endsWith(lockEnding) ? path.chopped(lockEnding.size()) : path);
    }
    return paths;
}

} // namespace

ArchiveDirectory::ArchiveDirectory()
{
    make();
    if (isValid()) {
        removeThoseOfKilledJobs();
    }
}

ArchiveDirectory::~ArchiveDirectory()
{
    remove();
}

// Creates the lock first, so the directory of a running job always has a lock.
void ArchiveDirectory::make()
{
    for (int attempt = 0; attempt < attempts; ++attempt) {
        const QString path = newPath();
        auto lock = std::make_unique<FileLock>(path + lockEnding);
        const FileLock::Result result = lock->tryHold();
        m_error = lock->errorString();
        if (result == FileLock::Result::Failed) {
            return;
        }
        if (result != FileLock::Result::HeldByAnother
            && QDir().mkdir(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner)) {
            m_path = path;
            m_lock = std::move(lock);
            return;
        }
    }
    m_error = QStringLiteral("cannot create a directory in %1").arg(QDir::tempPath());
}

// Removes only this user's directories: one that another user has created could lead to another
// place.
void ArchiveDirectory::removeThoseOfKilledJobs() const
{
    const uint user = QFileInfo(m_path).ownerId();
    for (const QString &path : pathsInTemp()) {
        const QFileInfo info(path);
        const bool isOurs = path != m_path && !info.isSymLink()
            && (!info.exists() || (info.isDir() && info.ownerId() == user));
        FileLock lock(path + lockEnding);
        if (isOurs && lock.tryHold() == FileLock::Result::Held) {
            QDir(path).removeRecursively();
        }
    }
}

void ArchiveDirectory::remove()
{
    if (isValid()) {
        QDir(m_path).removeRecursively();
        m_path.clear();
    }
    m_lock.reset();
}
