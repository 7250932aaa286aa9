// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/joblog.h"

#include <QByteArray>
#include <QString>

// Gives `executable` the icon `icon` (the bytes of an ICO file): runs the resource editor twice, the
// first time to delete every icon group and then to add MAINICON, has the shell's icon cache
// refreshed, and logs what can be seen of the result. Blocks for several seconds.
//
// True when the add run ended in time; everything after it is reported, but never a failure. While it
// runs, the two files below are there; the backup stays when the editor or the temporary icon cannot
// be provided.
bool replaceIconOfExecutable(const QString &executable, const QByteArray &icon, const LogSink &log);

// The copy of the executable that lies beside it meanwhile: its path + ".bak".
QString iconBackupPath(const QString &executable);

// The icon as a file for the editor, in the temporary directory.
QString temporaryIconPath();
