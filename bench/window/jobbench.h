// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

// Packs `folder` through the window. Prints the seconds the job took and how late a timer of the GUI
// thread was at most, in milliseconds. Fails when the job does.
int packThroughWindow(const QString &folder, const QString &mainExe, const QString &outputDir);
