// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "icons/logsink.h"

#include <QByteArray>

// Gives `executable` the icon `icon` (the bytes of an ICO file): runs the resource editor twice, the
// first time to delete every icon group and then to add MAINICON, has the shell's icon cache
// refreshed, and logs what can be seen of the result. Blocks for several seconds.
//
// True when the add run ended in time; everything after it is reported, but never a failure. While it
// runs, a backup lies beside the executable (its path + ".bak"); it stays there when the editor or the
// temporary icon cannot be provided.
bool replaceIconOfExecutable(const QString &executable, const QByteArray &icon, const LogSink &log);
