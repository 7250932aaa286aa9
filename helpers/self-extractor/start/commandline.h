// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/text.h"

namespace sfx {

// Longest command line of a Windows process in UTF-16 units, without the terminator (Microsoft,
// CreateProcessW: 32,767 with it).
constexpr std::size_t maxCommandLine = 32766;

// The part of a Windows command line after the program's name, unchanged, including the spaces
// before it. The name ends at the first space or tab outside quotes, as in the C runtime
// (Microsoft, "Parsing C command-line arguments": no backslash escapes in the name).
const char16_t *argumentTail(const char16_t *commandLine);

// Creates a command line with the quoted `path` and the arguments of `own`, unchanged. If that is
// too long for Windows, it uses the quoted `name` instead of `path`; if that is too long as well,
// `own` itself, which Windows has accepted before. Returns false if there is not enough memory.
[[nodiscard]] bool inheritCommandLine(const Text &path, const Text &name, const char16_t *own,
                                      Text &commandLine);

} // namespace sfx
