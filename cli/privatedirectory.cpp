// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "cli/privatedirectory.h"

#include "cli/useronly.h"

#include <QDir>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QSet>
#include <QThread>

namespace {

constexpr int attempts = 100;
constexpr int removalAttempts = 30;
constexpr unsigned long removalPauseMs = 100;
const QString lockEnding = QStringLiteral(".lock");

QString newPath()
{
    return QDir::temp().filePath(
        QStringLiteral("kestrelpack-cli-%1")
            .arg(QRandomGenerator::system()->generate64(), 16, 16, QLatin1Char('0')));
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

PrivateDirectory::PrivateDirectory()
{
    make();
    if (isValid()) {
        removeThoseOfKilledJobs();
    }
}

PrivateDirectory::~PrivateDirectory()
{
    remove();
}

// Creates the lock first, so the directory of a running job always has a lock.
void PrivateDirectory::make()
{
    for (int attempt = 0; attempt < attempts; ++attempt) {
        const QString path = newPath();
        auto lock = std::make_unique<FileLock>(path + lockEnding);
        const FileLock::Result result = lock->tryHold();
        m_error = lock->errorString();
        if (result == FileLock::Result::Failed) {
            return;
        }
        if (result != FileLock::Result::HeldByAnother && makeUserOnlyDirectory(path, m_error)) {
            m_path = path;
            m_lock = std::move(lock);
            return;
        }
    }
}

// Removes only this user's directories: one that another user has created could lead to another
// place.
void PrivateDirectory::removeThoseOfKilledJobs() const
{
    for (const QString &path : pathsInTemp()) {
        const bool isMissing = !QFileInfo::exists(path) && !QFileInfo(path).isSymLink();
        if (path == m_path || (!isMissing && !isOwnDirectory(path))) {
            continue;
        }
        FileLock lock(path + lockEnding);
        if (lock.tryHold() == FileLock::Result::Held) {
            QDir(path).removeRecursively();
        }
    }
}

bool PrivateDirectory::enter()
{
    setTemporaryDirectory(m_path);
    return QFileInfo(QDir::tempPath()).canonicalFilePath() == QFileInfo(m_path).canonicalFilePath();
}

void PrivateDirectory::remove()
{
    if (isValid()) {
        // Windows keeps a helper's file for a moment after the helper has ended, and so do scanners.
        for (int attempt = 0; !QDir(m_path).removeRecursively() && attempt < removalAttempts;
             ++attempt) {
            QThread::msleep(removalPauseMs);
        }
        m_path.clear();
    }
    m_lock.reset();
}
