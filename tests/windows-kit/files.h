// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <string>
#include <vector>

// Files and folders. All functions take full paths with backslashes, of any length.
namespace kit {

// The form of a path that has no limit of 260 characters.
std::wstring extended(const std::wstring &path);

bool exists(const std::wstring &path);
std::uint64_t sizeOf(const std::wstring &path);
// An empty text if the file cannot be read.
std::string readFile(const std::wstring &path);
bool writeFile(const std::wstring &path, const std::string &content);
bool copyFile(const std::wstring &from, const std::wstring &to);
// Also the folders above it.
bool makeFolder(const std::wstring &path);
void removeFolder(const std::wstring &path);
// The names that match, such as L"*.exe", in alphabetical order.
std::vector<std::wstring> namesIn(const std::wstring &folder, const std::wstring &pattern = L"*");

std::wstring parentOf(const std::wstring &path);
std::wstring ownProgram();                            // this process' file
std::wstring systemProgram(const std::wstring &name); // in System32
std::wstring variable(const wchar_t *name);

} // namespace kit
