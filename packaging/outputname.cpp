// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "packaging/outputname.h"

#include <QDir>
#include <QFileInfo>

QString outputBaseName(const QString &mainExeName)
{
    return QFileInfo(mainExeName).baseName();
}

QString outputPath(const QString &outputDir, const QString &mainExeName)
{
    return QDir(outputDir).filePath(outputBaseName(mainExeName) + ".exe");
}
