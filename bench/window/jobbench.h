// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

// Packs `folder` with the window. Prints the job's time in seconds, and the largest delay of a
// timer on the GUI thread in milliseconds. Returns 1 if the job fails, otherwise 0.
int packThroughWindow(const QString &folder, const QString &mainExe, const QString &outputDir);
