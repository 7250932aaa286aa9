// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

// Says why Windows cannot hold a folder or file of that name, by the self-extractor's own rules. The
// result is the end of an English sentence without a full stop, such as "on Windows that is the
// name of a device". Returns an empty text if the name is possible. `name` is one name, not a path.
QString windowsNameFault(const QString &name);

// The same for a path with `/` between its names. Checks only the last name and the length of the
// whole path: every folder on the way is an entry with a check of its own.
QString windowsPathFault(const QString &path);

// A path for a message: control characters are shown as \x1b, and no line breaks are left.
QString shownPath(const QString &path);
