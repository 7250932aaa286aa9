// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "preparation/message.h"

#include <QString>

#include <optional>

// Says why Windows cannot hold a folder or file with that path, by the self-extractor's own rules, or
// nothing if it can. `path` is relative, with `/` between its names. Checks only the last name and
// the length of the whole path: every folder on the way is an entry that is checked, too.
std::optional<Message> windowsNameProblem(const QString &path);

// A path for a message: control characters are shown as \x1b, and no line breaks are left.
QString shownPath(const QString &path);
