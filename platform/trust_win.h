// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

// Returns why the file at `path` must not be run or copied, as one English sentence. Returns an
// empty text if it may be used, or if it does not exist.
//
// If others can write to its directory (accessrules.h), the file must belong to the user, the
// system or the administrators; a symbolic link and its target must both do so. In any other
// directory, and on a disk without access lists, nothing is checked.
QString untrustedFileReason(const QString &path);

// The security identifier of this thread's user, or else of the process's. Empty if the system does
// not tell.
QString currentUser();

// Returns true if this user, and not one of his groups, is the owner of the file or folder. A link
// counts itself.
bool isOwnFile(const QString &path);
