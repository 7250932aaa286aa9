// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "cli/outputguard.h"

#include "icons/iconreplacement.h"

#include <QDir>
#include <QFile>

namespace {

constexpr qint64 comparedSize = 4096;

// Whether `output` ends with the content of `archive`, told by the first and the last few bytes of it:
// a write that was cut short leaves no room for both.
bool endsWithArchive(QFile &output, QFile &archive)
{
    const qint64 start = output.size() - archive.size();
    const qint64 size = qMin(comparedSize, archive.size());
    if (start < 0 || !output.seek(start) || output.read(size) != archive.read(size)) {
        return false;
    }
    return output.seek(output.size() - size) && archive.seek(archive.size() - size)
        && output.read(size) == archive.read(size);
}

// A name beside `output` that no file has; an earlier one may still hold what was rescued from a job
// that was killed.
QString freeNameBeside(const QString &output)
{
    QString name = output + ".previous";
    for (int number = 2; QFile::exists(name); ++number) {
        name = QStringLiteral("%1.previous-%2").arg(output).arg(number);
    }
    return name;
}

} // namespace

OutputGuard::OutputGuard(const QString &output)
    : m_output(output)
    , m_backupIsOurs(!QFile::exists(iconBackupPath(output)))
    , m_directory(QDir::temp().filePath("kestrelpack-cli-XXXXXX"))
{
}

bool OutputGuard::isValid() const
{
    return m_directory.isValid();
}

QString OutputGuard::errorString() const
{
    return m_directory.errorString();
}

QString OutputGuard::archivePath() const
{
    return m_directory.filePath("temp.7z");
}

void OutputGuard::setOldOutputAside()
{
    if (!QFile::exists(m_output)) {
        return;
    }
    const QString name = freeNameBeside(m_output);
    if (QFile::rename(m_output, name)) {
        m_oldOutput = name;
    } else {
        m_outputIsOurs = false;
    }
}

bool OutputGuard::outputIsWhole() const
{
    QFile output(m_output);
    QFile archive(archivePath());
    return output.open(QIODevice::ReadOnly) && archive.open(QIODevice::ReadOnly)
        && endsWithArchive(output, archive);
}

void OutputGuard::keepOutput()
{
    if (!m_oldOutput.isEmpty()) {
        QFile::remove(m_oldOutput);
    }
}

void OutputGuard::undoOutput()
{
    if (m_outputIsOurs) {
        QFile::remove(m_output);
    }
    if (m_backupIsOurs) {
        QFile::remove(iconBackupPath(m_output));
    }
    if (!m_oldOutput.isEmpty()) {
        QFile::rename(m_oldOutput, m_output);
    }
}

void OutputGuard::removeArchive()
{
    m_directory.remove();
}
