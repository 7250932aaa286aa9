// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/text.h"

namespace sfx {

// This process' working folder, which is the caller's. Returns false on failure, with the reason in
// GetLastError().
[[nodiscard]] bool callersFolder(Text &folder);

// Sets environment variables that tell the program where it comes from: KESTRELPACK_EXE (the
// produced file), KESTRELPACK_EXE_DIR (its folder), KESTRELPACK_DIR (the folder that the
// application was unpacked into) and KESTRELPACK_CWD (the caller's working folder). All paths are
// absolute. The program inherits them from this process. Returns false on failure, with the reason
// in GetLastError().
[[nodiscard]] bool setProgramEnvironment(const Text &executable, const Text &application);

} // namespace sfx
