// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/e2e/sourcefolder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>

namespace {

void require(bool done, const QString &what)
{
    if (!done) {
        qFatal("%s could not be made", qUtf8Printable(what));
    }
}

} // namespace

SourceFolder::SourceFolder(const QString &path) : m_path(path)
{
    require(QDir().mkpath(path), path);
}

void SourceFolder::addFile(const QString &name, const QByteArray &content)
{
    require(QDir().mkpath(QFileInfo(filePath(name)).path()), name);
    QFile file(filePath(name));
    require(file.open(QIODevice::WriteOnly) && file.write(content) == content.size(), name);
    file.close();
    noteFile(name);
}

void SourceFolder::addProgram(const QString &name, const QString &original)
{
    require(QFile::copy(original, filePath(name)), name);
    noteFile(name);
}

void SourceFolder::addFolder(const QString &name)
{
    require(QDir().mkpath(filePath(name)), name);
    m_manifest << "D " + name;
}

void SourceFolder::addLargeFile(const QString &name, qint64 size)
{
    QRandomGenerator random(4711);
    QFile file(filePath(name));
    require(file.open(QIODevice::WriteOnly), name);
    QByteArray block(3 << 20, '\0');
    while (size > 0) {
        // One third is noise, the rest repeats earlier bytes.
        random.fillRange(reinterpret_cast<quint32 *>(block.data()), block.size() / 12);
        const qint64 count = qMin<qint64>(size, block.size());
        require(file.write(block.constData(), count) == count, name);
        size -= count;
    }
    file.close();
    noteFile(name);
}

void SourceFolder::noteFile(const QString &name)
{
    QFile file(filePath(name));
    require(file.open(QIODevice::ReadOnly), name);
    quint64 hash = 0xcbf29ce484222325ULL;
    while (!file.atEnd()) {
        for (const char byte : file.read(1 << 20)) {
            hash = (hash ^ static_cast<quint8>(byte)) * 0x100000001b3ULL;
        }
    }
    m_manifest << QStringLiteral("F %1 %2 %3").arg(file.size()).arg(hash, 0, 16).arg(name);
}

void SourceFolder::writeManifest()
{
    QFile file(filePath("manifest.txt"));
    const QByteArray content = m_manifest.join('\n').toUtf8() + '\n';
    require(file.open(QIODevice::WriteOnly) && file.write(content) == content.size(), "manifest");
}
