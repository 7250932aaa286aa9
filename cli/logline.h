// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

// What a line of the job log is to the person at the terminal.
enum class LogLineKind { Information, Warning, Error };

// Tells the kind of a line by its text.
LogLineKind kindOfLogLine(const QString &line);
