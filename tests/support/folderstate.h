// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

// The state of a folder and everything in it: names, sizes, times, permissions and bytes, one line
// for each entry. The names in `leftOut` and everything below them are left out, and so are the
// times of the folders that contain them.
inline QStringList folderState(const QString &folder, const QStringList &leftOut = {})
{
    QStringList paths{folder};
    QDirIterator entries(folder,
                         QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                         QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        paths << entries.next();
    }
    paths.sort();

    QStringList state;
    for (const QString &path : paths) {
        const bool isLeftOut
            = std::any_of(leftOut.begin(), leftOut.end(), [&path](const QString &name) {
                  return path == name || path.startsWith(name + '/');
              });
        if (isLeftOut) {
            continue;
        }
        const QFileInfo info(path);
        const bool holdsOneLeftOut
            = std::any_of(leftOut.begin(), leftOut.end(),
                          [&path](const QString &name) { return QFileInfo(name).path() == path; });
        const QString time = holdsOneLeftOut ? QString()
                                             : info.lastModified().toString(Qt::ISODateWithMs);
        QFile file(path);
        QCryptographicHash hash(QCryptographicHash::Sha1);
        const bool hasBytes = info.isFile() && file.open(QIODevice::ReadOnly)
            && hash.addData(&file);
        state << QStringLiteral("%1 %2 %3 %4 %5")
                     .arg(path, time, QString::number(info.isFile() ? info.size() : 0),
                          QString::number(info.permissions().toInt(), 16),
                          hasBytes ? QString::fromLatin1(hash.result().toHex()) : QString("-"));
    }
    return state;
}
