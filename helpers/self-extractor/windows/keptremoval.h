// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/start/pathindex.h"
#include "helpers/self-extractor/windows/entryhandle.h"

#include <cstdint>

namespace sfx {

// Removes an open file, folder or link with these attributes; closes it. Returns false if it is in
// use, or is a folder that is not empty.
bool removeEntry(Handle &opened, DWORD attributes);

// Removes the entries of a folder whose paths are in `ours`. Others stay, with the folders that they
// lie in, and do not count. While a program or library of ours is in use, nothing is touched. The
// folder, whose path is in extended form, must belong to the owner of `mine`; no link is followed. After `deadline` (GetTickCount64()) it stops;
// a later call continues. Returns false if something is left.
bool removeListed(const Text &path, HANDLE mine, const PathIndex &ours, std::uint64_t deadline);

} // namespace sfx
