// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

// Returns the produced program's name without its extension: the main program's file name up to its
// first dot ("my.tool.exe" gives "my").
QString outputBaseName(const QString &mainExeName);

// Returns the path of the produced executable: base name + ".exe" in `outputDir`.
QString outputPath(const QString &outputDir, const QString &mainExeName);
