// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "cli/useronly.h"

#include <QFile>

#include <cerrno>

#include <sys/stat.h>
#include <unistd.h>

bool makeUserOnlyDirectory(const QString &path, QString &error)
{
    const QByteArray name = QFile::encodeName(path);
    if (mkdir(name.constData(), S_IRWXU) != 0) {
        error = qt_error_string(errno);
        return false;
    }
    return true;
}

bool isOwnDirectory(const QString &path)
{
    struct stat status = {};
    return lstat(QFile::encodeName(path).constData(), &status) == 0 && S_ISDIR(status.st_mode)
        && status.st_uid == geteuid();
}

// Programs that the helpers might start could look at any of the three.
void setTemporaryDirectory(const QString &path)
{
    for (const char *variable : {"TMPDIR", "TMP", "TEMP"}) {
        qputenv(variable, QFile::encodeName(path));
    }
}
