// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

// A folder to pack that knows its content. If it cannot be made, the test program ends.
class SourceFolder
{
public:
    explicit SourceFolder(const QString &path);

    QString path() const { return m_path; }
    QString filePath(const QString &name) const { return m_path + '/' + name; }

    void addFile(const QString &name, const QByteArray &content);
    void addProgram(const QString &name, const QString &original);
    void addFolder(const QString &name);
    // `size` bytes that compress to about one third.
    void addLargeFile(const QString &name, qint64 size);

    // Writes manifest.txt for checker.c, with everything that was added before.
    void writeManifest();

private:
    void noteFile(const QString &name);

    QString m_path;
    QStringList m_manifest;
};
