// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <string_view>
#include <vector>

// Windows' rules for file names, implemented again in another way, to compare the module with them.
namespace windowsnames {

// Whether this is one plain name.
bool isName(std::u16string_view name);
// Whether all names between slashes are plain, and the path is not longer than the module allows.
bool isRelativePath(std::u16string_view path);

struct Path
{
    std::u16string text;
    bool isFolder = false;
};

// Whether two of the paths are the same to a file system that ignores the case of ASCII letters, or
// one path is inside another that is a file.
bool anyCollide(const std::vector<Path> &paths);

} // namespace windowsnames
