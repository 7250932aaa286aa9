// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/windows/entryhandle.h"

namespace sfx {

// Opens a folder by its path in extended form, to list it. While the handle is open, the folder
// cannot be renamed, removed or replaced. Returns false if it is not a folder, or cannot be opened.
[[nodiscard]] bool guardFolder(const Text &path, Handle &folder);

// Opens a file to read it, or a folder to list it, as openEntry() does. Others may use and remove it.
EntryUse openToRead(const ListedEntry &entry, Handle &opened);

} // namespace sfx
