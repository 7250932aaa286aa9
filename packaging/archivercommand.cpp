// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "packaging/archivercommand.h"

#include "platform/platform.h"

#include <QDir>

QStringList archiverArguments(const PackagingJob &job)
{
    return {
        "a",
        "-t7z",
        platform().nativePath(job.archivePath),
        platform().nativePath(job.folderPath + QDir::separator() + '*'),
        "-r",
        "-mx=" + job.compressionLevel,
        "-m0=" + job.compressionMethod,
        "-bsp1",
        "-ssc",
    };
}
