// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <string_view>
#include <vector>

// Windows' rules for file names, written a second time in a different way, to check the module's
// rules.
namespace windowsnames {

// Returns true if this is one plain name.
bool isName(std::u16string_view name);
// Returns true if all pieces between slashes are plain names, and the path is not longer than the
// module allows.
bool isRelativePath(std::u16string_view path);

struct Path
{
    std::u16string text;
    bool isFolder = false;
};

// Returns true if two of the paths are the same to a file system that ignores the case of ASCII
// letters, or if one path lies inside another that is a file.
bool anyCollide(const std::vector<Path> &paths);

} // namespace windowsnames
