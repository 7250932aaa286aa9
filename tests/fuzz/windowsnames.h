// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <string_view>
#include <vector>

// Windows' rules for file names, written a second time and in another way than the module's, to
// hold the module's against them.
namespace windowsnames {

// Whether this is one plain name.
bool isName(std::u16string_view name);
// Whether all pieces between slashes are, and the whole is no longer than the module allows.
bool isRelativePath(std::u16string_view path);

struct Path
{
    std::u16string text;
    bool isFolder = false;
};

// Whether two of the paths are one to a file system that does not tell small from capital ASCII
// letters, or one lies in another that is a file.
bool anyCollide(const std::vector<Path> &paths);

} // namespace windowsnames
