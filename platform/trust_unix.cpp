// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "platform/trust_unix.h"

#include <QFile>

#include <sys/stat.h>
#include <unistd.h>

// The temporary directory is everybody's here, and its file names are fixed: whoever comes first
// could leave a program of his own under them.
QString untrustedFileReason(const QString &path)
{
    struct stat status = {};
    if (stat(QFile::encodeName(path).constData(), &status) != 0) {
        return {};
    }
    if (status.st_uid != geteuid()) {
        return QStringLiteral("%1 belongs to another user").arg(path);
    }
    if (status.st_mode & (S_IWGRP | S_IWOTH)) {
        return QStringLiteral("%1 may be written by others").arg(path);
    }
    return {};
}
