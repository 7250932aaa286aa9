// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/text.h"

namespace sfx {

/// Puts into this process' environment, for the program to inherit, where it comes from:
/// KESTRELPACK_EXE (the outer file), KESTRELPACK_EXE_DIR (its folder), KESTRELPACK_DIR (the folder
/// that the application was unpacked into) and KESTRELPACK_CWD (the caller's working folder). All
/// are absolute. False: GetLastError() tells why.
[[nodiscard]] bool setProgramEnvironment(const Text &executable, const Text &application);

} // namespace sfx
