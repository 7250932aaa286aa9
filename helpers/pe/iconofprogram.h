// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/pe/bytes.h"
#include "helpers/pe/result.h"

#include <filesystem>
#include <optional>

namespace pe {

// The icon of a program as an ICO file with one image: of the first icon group (in directory order,
// its first language) the largest image, of several the one with the most bits a pixel. Nothing
// when the program has no icon that can be read; an error when the file cannot be read or is no PE.
Result<std::optional<Bytes>> iconOfProgram(const std::filesystem::path &program);

} // namespace pe
