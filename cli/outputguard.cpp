// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "cli/outputguard.h"

#include "cli/language.h"
#include "cli/replacefile.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>

namespace {

constexpr int attempts = 100;
constexpr int keptOfHash = 8;

// Returns a prefix that is unique for each output, and short even if the output's name is long. If
// the file system ignores upper and lower case, two spellings of a name get the same prefix.
QString prefixFor(const QString &output)
{
    const QFileInfo info(output);
    const QByteArray hash
        = QCryptographicHash::hash(info.fileName().toLower().toUtf8(), QCryptographicHash::Sha1);
    return info.dir().filePath(".kestrelpack-"
                               + QString::fromLatin1(hash.toHex().left(keptOfHash)));
}

} // namespace

OutputGuard::OutputGuard(const QString &output, const QString &madeName)
    : m_output(output)
    , m_madeName(madeName)
    , m_prefix(prefixFor(output))
    , m_lock(m_prefix + ".lock")
{
}

OutputGuard::~OutputGuard()
{
    release();
}

QString OutputGuard::hold()
{
    switch (m_lock.tryHold()) {
    case FileLock::Result::Held:
        removeThoseOfKilledJobs();
        break;
    case FileLock::Result::HeldByAnother:
        return text("another job is making %1").arg(m_output);
    case FileLock::Result::NoLocksHere:
        // The directory itself is the lock. It may be in use, or it may remain from a killed job.
        if (QFileInfo::exists(directoryName(1))) {
            return text("another job is making %1; if there is none, remove %2")
                .arg(m_output, directoryName(1));
        }
        break;
    case FileLock::Result::Failed:
        return text("cannot lock the output %1: %2").arg(m_output, m_lock.errorString());
    }
    return makeDirectory();
}

QString OutputGuard::madeFile() const
{
    return QDir(m_directory).filePath(m_madeName);
}

QString OutputGuard::putInPlace() const
{
    return replaceFile(madeFile(), m_output);
}

void OutputGuard::release()
{
    if (!m_directory.isEmpty()) {
        QDir(m_directory).removeRecursively();
        m_directory.clear();
    }
    m_lock.release();
}

QString OutputGuard::directoryName(int number) const
{
    return number == 1 ? m_prefix + ".tmp" : QStringLiteral("%1-%2.tmp").arg(m_prefix).arg(number);
}

void OutputGuard::removeThoseOfKilledJobs() const
{
    const QFileInfo prefix(m_prefix);
    const auto entries = prefix.dir().entryInfoList({prefix.fileName() + "*.tmp"},
                                                    QDir::Dirs | QDir::Hidden | QDir::System
                                                        | QDir::NoDotAndDotDot);
    for (const QFileInfo &entry : entries) {
        if (!entry.isSymLink()) { // a symbolic link could lead anywhere
            QDir(entry.filePath()).removeRecursively();
        }
    }
}

// Tries several names: the directory of a killed job cannot always be removed, because on Windows
// its helper may still have a file open there.
QString OutputGuard::makeDirectory()
{
    for (int number = 1; number <= attempts; ++number) {
        // Creates it with the usual permissions of the parent directory. On Windows a moved file
        // keeps the permissions from the directory in which it was created.
        if (QDir().mkdir(directoryName(number))) {
            m_directory = directoryName(number);
            return {};
        }
    }
    m_lock.release();
    return text("cannot create the directory %1").arg(directoryName(1));
}
