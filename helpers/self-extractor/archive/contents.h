// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/archive/archive.h"
#include "helpers/self-extractor/archive/pathset.h"

namespace sfx {

// Checks every entry before anything is written: names, kinds and collisions. Checks how all solid
// blocks are packed, and that `program` is the path of a file. `totalBytes` becomes the size of all
// files together.
Status checkContents(Archive &archive, const Text &program, UpperCase upperCase,
                     std::uint64_t &totalBytes);

} // namespace sfx
