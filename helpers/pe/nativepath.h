// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <string>

namespace pe {

// A path as the system takes it: UTF-16 on Windows, bytes elsewhere. std::filesystem is not used: it
// brings half a megabyte of library code into a program.
#ifdef _WIN32
using NativePath = std::wstring;
#else
using NativePath = std::string;
#endif

// The path as UTF-8, for messages.
std::string utf8Of(const NativePath &path);

// The folder of a file, with the separator at its end; empty if the path is only a name.
NativePath folderOf(const NativePath &path);

// The file that a symbolic link names, or else the path itself.
NativePath withoutLink(const NativePath &path);

// True if the two paths are equal or name the same existing file.
bool isSameFile(const NativePath &left, const NativePath &right);

#ifdef _WIN32
// The path in the form that Windows allows to be longer than 259 units: absolute, and with "\\?\" or
// "\\?\UNC\" before it.
NativePath extendedPath(const NativePath &path);
#endif

} // namespace pe
