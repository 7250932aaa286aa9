// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <sys/stat.h>

// Returns why the file at `path` must not be run or copied. Returns an empty text if it may be
// used, or if it does not exist.
//
// If other users can write to its directory, the file must belong to the user or to root; a
// symbolic link and its target must both do so. In any other directory nothing is checked. The
// file's mode does not matter.
QString untrustedFileReason(const QString &path);

// Returns true if a user other than `user` and root can create files in the directory with the
// record `directory`: it belongs to another user, everybody can write to it, or a group can that is
// not the user's own. A user's own group has the user's name and no other member, as on systems
// whose umask is 002.
bool othersMayWrite(const struct stat &directory, uid_t user);
