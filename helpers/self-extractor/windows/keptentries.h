// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/windows/entryhandle.h"

namespace sfx {

// Opens a folder by its path in extended form, to list it. While the handle is open, the folder
// cannot be renamed, removed or replaced. Returns false if it is not a folder, or cannot be opened,
// with the reason in GetLastError().
[[nodiscard]] bool guardFolder(const Text &path, Handle &folder);

// Creates a file, which must be new, in an open folder, for writing. Nobody else can open it until
// its handle is closed. The system finds it faster than by its whole path. Returns false on failure,
// with the reason in GetLastError().
[[nodiscard]] bool createFile(HANDLE folder, const char16_t *name, std::size_t nameSize,
                              Handle &file);

// Opens a file to read it, or a folder to list it, as openEntry() does. Others may use and remove it.
EntryUse openToRead(const ListedEntry &entry, Handle &opened);

} // namespace sfx
