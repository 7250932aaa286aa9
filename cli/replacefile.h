// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

// Renames the file `from` to `to`; both are on the same disk. An existing file `to` is replaced.
// Returns an empty text, or on failure the system's error message; `to` is then unchanged.
//
// On Windows a running program cannot be replaced. It is renamed to `to` + ".previous" instead, and
// removed if Windows allows that.
QString replaceFile(const QString &from, const QString &to);
