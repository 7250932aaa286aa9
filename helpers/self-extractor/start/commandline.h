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

// Sets `arguments` to `first`, which may be empty, and the arguments of the command line `own`, both
// unchanged and with a space before them. Returns false if there is not enough memory.
[[nodiscard]] bool joinArguments(const Text &first, const char16_t *own, Text &arguments);

// Creates a command line with the quoted `path` and the arguments of joinArguments(). If that is too
// long for Windows, it uses the quoted `name` instead of `path`. If that is too long as well, it is
// `own` itself, which Windows has accepted before; with arguments in `first` it stays empty, because
// the program must not run without them. Returns false if there is not enough memory.
[[nodiscard]] bool inheritCommandLine(const Text &path, const Text &name, const Text &first,
                                      const char16_t *own, Text &commandLine);

} // namespace sfx
