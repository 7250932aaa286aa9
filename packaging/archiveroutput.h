// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

// Turning what the archiver prints into facts. Its texts are in the system's 8-bit code page.

// The first percentage in a chunk of output: the digits in front of the first '%' that follows a
// digit. A number beyond the range of int counts as 0. Empty when the chunk holds none.
std::optional<int> firstPercentage(const QString &chunk);

// What a failed archiver said: its standard error, or, when that is empty, what is left of its
// standard output.
QString archiverErrorText(const QByteArray &standardError, const QByteArray &standardOutput);
