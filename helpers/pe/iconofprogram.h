// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/pe/bytes.h"
#include "helpers/pe/nativepath.h"
#include "helpers/pe/result.h"

#include <optional>

namespace pe {

// The icon of a program as an ICO file with one image: the largest image of the first icon group (in
// the order of the directory, in its first language), and among images of that size the one with the most
// bits per pixel. Returns nothing if the program has no readable icon; fails if the file cannot be
// read or is not a PE file.
Result<std::optional<Bytes>> iconOfProgram(const NativePath &program);

// The same icon group as an ICO file with all its images, each with the bytes that it has in the
// program, in the group's order. Returns nothing also if one image is missing or damaged, or if the
// ICO file would be larger than maxIcoFileSize.
Result<std::optional<Bytes>> iconGroupOfProgram(const NativePath &program);

} // namespace pe
