// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

// Reads the archiver's output. Its texts are in the system's 8-bit code page.

// Returns the first percentage in a chunk of output: the digits before the first '%' that follows a
// digit. A number beyond the range of int counts as 0. Returns nothing if the chunk has no
// percentage.
std::optional<int> firstPercentage(const QString &chunk);

// Returns the error text of a failed archiver: its standard error, or, if that is empty, the unread
// rest of its standard output.
QString archiverErrorText(const QByteArray &standardError, const QByteArray &standardOutput);
