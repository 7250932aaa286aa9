// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/core/text.h"

namespace sfx {

/// Removes a folder with everything in it; `path` is in extended form (`\\?\...`). Links are
/// removed and never followed. What another process holds open (a scanner, a program that is just
/// ending) is tried again with growing pauses for about ten seconds. False: something is left.
bool removeTree(const Text &path);

} // namespace sfx
