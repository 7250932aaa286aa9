// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

// Creates the directory `path`, which nobody but this user can list, read or change (and on Windows
// the system and the administrators). Returns false if it exists already, or cannot be created;
// `error` is then the system's message.
bool makeUserOnlyDirectory(const QString &path, QString &error);

// Returns true if `path` is a directory, no link, and this user is its owner.
bool isOwnDirectory(const QString &path);

// Makes `path` the temporary directory of this process and of those that it starts from now on.
// Call it before another thread exists.
void setTemporaryDirectory(const QString &path);
