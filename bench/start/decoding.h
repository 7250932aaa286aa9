// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

// Writes the offset of the archive in a produced executable to standard output. If there is no
// archive, writes a line to standard error and returns false.
bool printArchiveOffset(const char *path);

// Decodes the archive of a produced executable as the module does, with all checks, but writes no
// files. If that fails, writes a line to standard error and returns false.
bool decodeIntoNothing(const char *path);
