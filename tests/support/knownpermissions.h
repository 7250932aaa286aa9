// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/support/onwindows.h"

#include <QFile>

// Returns the permissions that the system can tell apart. Windows knows only whether a file is
// writable.
inline QFile::Permissions known(QFile::Permissions permissions)
{
    return onWindows ? permissions & QFile::WriteOwner : permissions;
}
