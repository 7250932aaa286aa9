// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/text.h"

namespace sfx {

// Converts an absolute path to the form without a length limit: `\\?\C:\...` or `\\?\UNC\...`.
// Returns false if there is not enough memory.
[[nodiscard]] bool toExtendedPath(const Text &path, Text &extended);

// Whether a path begins with a drive and its root, or with the name of a network drive's machine.
inline bool isAbsolutePath(const Text &path)
{
    const char16_t *units = path.data();
    return path.size() > 2
        && ((units[1] == u':' && units[2] == u'\\') || (units[0] == u'\\' && units[1] == u'\\'));
}

// The folder that contains the file of an absolute path, without a separator at its end, except for
// a drive's root (`C:\`). Returns false if there is not enough memory.
[[nodiscard]] bool folderOf(const Text &path, Text &folder);

// Appends a path of the archive, with the system's separators in place of `/`. Returns false if there
// is not enough memory.
[[nodiscard]] bool appendArchivePath(Text &path, const char16_t *archivePath, std::size_t size);

// The part of a path after its last separator; all of it if there is none.
const char16_t *fileNameOf(const Text &path);

// Converts a path from the form without a length limit to the usual one. A path of the usual form
// stays as it is, and so does one that has no usual form (`\\?\Volume{...}`). Returns false if there
// is not enough memory.
[[nodiscard]] bool toPlainPath(const Text &extended, Text &path);

// Longest working folder that a process can be started in, in UTF-16 units (Microsoft: MAX_PATH,
// less the separator and the terminator).
constexpr std::size_t longestWorkingFolder = 258;

// Whether `text`, a path or a command line, contains a path into `folder`. Only the folder's own
// name is compared, without regard to case: a private folder's name is unique, but the way to it
// has many spellings (short names, mapped drives, mount points, device names).
bool pointsInto(const Text &text, const Text &folder);

} // namespace sfx
