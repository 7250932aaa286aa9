// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

// Writes the offset of the archive in a produced executable to standard output. False, after a line
// on standard error: there is none.
bool printArchiveOffset(const char *path);

// Decodes the archive of a produced executable as the module does, checks included, and writes
// nothing. False, after a line on standard error: the file could not be decoded.
bool decodeIntoNothing(const char *path);
