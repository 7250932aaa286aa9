// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "preparation/sourcetree.h"

#include <QString>

#include <functional>

// The system's part of a staged tree. Paths are absolute. Unless it is said otherwise, a function
// returns the system's error message, or an empty text if all is well.

// Is called again and again during a copy, with the bytes copied since the last call. Returns false
// to stop.
using CopyProgress = std::function<bool(qint64 bytes)>;

// Makes `target` another name for the file `source`. Returns false if that is not possible, for
// example because the two lie on different file systems.
bool linkFile(const QString &source, const QString &target);

// Copies the bytes of the file `source` into the new file `target`, which gets the time and the
// permissions of `planned`. A copy that was stopped has an error, too.
QString copyFile(const QString &source, const QString &target, const PlannedFile &planned,
                 const CopyProgress &progress);

// Bytes that this user can still write in an existing folder; 0 if the system does not say it.
qint64 freeBytesAt(const QString &folder);

QString makeFolder(const QString &path);
// Sets the time and the permissions. Call it when the folder has all of its content.
QString finishFolder(const QString &path, const PlannedFolder &planned);

// Makes sure that entries in a folder that makeFolder() has made can be removed.
void openFolderForRemoval(const QString &path);
// Removes a link or a copy, but not what a link leads to. Does not change a file that has another
// name.
bool removeStagedFile(const QString &path, bool isCopy);
bool removeStagedFolder(const QString &path);
