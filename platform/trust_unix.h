// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <sys/stat.h>

// Why the file at `path` must not be run or handed on. Empty when it may be, or is not there.
//
// Where others may write the directory that holds it, the file must belong to the user or to root; a
// symbolic link must, and so must its target. In any other directory nothing is checked. The modes of the
// file never matter.
QString untrustedFileReason(const QString &path);

// Returns true if somebody other than `user` and root may put files into the directory with the record
// `directory`: it belongs to another user, everybody may write it, or a group may that is not the user's
// own. A user's own group has the user's name and no other member, as on systems whose umask is 002.
bool othersMayWrite(const struct stat &directory, uid_t user);
