// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

// Gives the file `from` the name `to`, on the same disk; a file of that name is replaced, or stays as it
// was. Returns what the system said when it failed, and nothing when it is done.
//
// On Windows a program that is running cannot be replaced: it gets the name `to` + ".previous" and stays,
// where it cannot be removed.
QString replaceFile(const QString &from, const QString &to);
