// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

// The kinds of lines in the job log, for the user at the terminal.
enum class LogLineKind { Information, Warning, Error };

// Returns the kind of a line, judged by its text.
LogLineKind kindOfLogLine(const QString &line);
