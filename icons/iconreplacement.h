// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/joblog.h"

#include <QByteArray>
#include <QString>

// Sets the icon of `executable` to `icon` (the bytes of an ICO file). Runs the resource editor
// twice: first to delete every icon group, then to add MAINICON. Then refreshes the shell's icon
// cache and logs the visible result. Blocks for several seconds.
//
// Returns true if the add run ended in time; problems after that are logged, but are not failures.
// The two files below exist while this function runs. If the editor or the temporary icon cannot be
// created, the backup stays.
bool replaceIconOfExecutable(const QString &executable, const QByteArray &icon, const LogSink &log);

// Returns the path of the backup copy beside the executable: its path + ".bak".
QString iconBackupPath(const QString &executable);

// Returns the path of the icon file for the editor, in the temporary directory.
QString temporaryIconPath();
