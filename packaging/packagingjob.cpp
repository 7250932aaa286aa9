// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "packaging/packagingjob.h"

#include "icons/iconreplacement.h"
#include "packaging/outputname.h"

QString PackagingJob::outputPath() const
{
    return ::outputPath(outputDir, mainExeName);
}

QString PackagingJob::temporaryIconPath()
{
    return ::temporaryIconPath();
}
