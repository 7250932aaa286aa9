// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "packaging/blockwriter.h"

QString configurationBlock(const QString &baseName, const QString &mainExeName)
{
    // The module replaces "%%T" by the temporary folder; QString::arg does not touch it.
    return QStringLiteral(";!@Install@!UTF-8!\n"
                          "Title=\"%1 Portable\"\n"
                          "BeginPrompt=\"确定要运行 %1 便携版吗？\"\n"
                          "Progress=\"yes\"\n"
                          "RunProgram=\"%2\"\n"
                          "InstallPath=\"%%T\\%3\"\n"
                          "GUIMode=\"2\"\n"
                          "Silent=\"0\"\n"
                          "Overwrite=\"1\"\n"
                          ";!@InstallEnd@!\n")
        .arg(baseName)
        .arg(mainExeName)
        .arg(baseName);
}
