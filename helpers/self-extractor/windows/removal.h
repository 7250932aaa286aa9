// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/text.h"
#include "helpers/self-extractor/windows/win32.h"

#include <cstdint>

namespace sfx {

// Removes a folder with everything in it, or nothing at all: as long as another process uses
// something in it (a program that has left the job, a scanner), everything stays. What the access
// rights keep from being removed does not count. Links are removed and never followed. Everything
// goes by handles that are opened one from another, from the folder's own on.
//
// The paths are in extended form (`\\?\...`).

// Tries for about five seconds, with growing pauses. `guard` is an open handle of this folder and is
// closed; if the path then leads to another folder, nothing is removed. Returns false if something
// is left.
bool removeTree(const Text &path, Handle &guard);

// The same with one try, and only if the folder has the same owner as the file `mine`. If
// `deadline` (in GetTickCount64's time) has passed when no program was found in use, what has been
// found free until then is removed; a later call continues. Returns false if something is left.
bool removeOwnTree(const Text &path, HANDLE mine, std::uint64_t deadline);

} // namespace sfx
