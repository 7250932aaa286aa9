// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

// Returns true if the archiver would read the path as a pattern, and pack or write to other places as
// well. On Windows a name cannot contain these characters, but a path can begin with "//?/".
bool isArchiverPattern(const QString &path);

// Returns the method for the archiver's one argument for it, such as "LZMA" or "LZMA2:c=128m".
// `level` is a digit from "0" to "9", `method` is "LZMA" or "LZMA2".
//
// Level 0 is "Copy": the archiver would otherwise compress with its fastest setting. With the method, the
// archive does not depend on the number of processors and the memory of this machine (README.md says
// what that costs).
QString archiverMethod(const QString &level, const QString &method);

// The method that the archiver for fast starts takes (helpers/fast-archiver). Its archives never depend on the
// machine.
QString fastArchiverMethod();
