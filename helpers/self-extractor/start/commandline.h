// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/text.h"

namespace sfx {

/// Longest command line of a Windows process in UTF-16 units, without the terminator (Microsoft,
/// CreateProcessW: 32,767 with it).
constexpr std::size_t maxCommandLine = 32766;

/// The part of a Windows command line behind the program's name, verbatim, with the blanks in front
/// of it. The name ends at the first blank or tab outside quotes, as the C runtime has it
/// (Microsoft, "Parsing C command-line arguments": no backslash escapes in the name).
const char16_t *argumentTail(const char16_t *commandLine);

/// The command line of a program that takes over the arguments of `own` as they stand: the quoted
/// `path` in front of them. Where that is too long for Windows, the quoted `name` alone, and where
/// even that is, `own` itself, which Windows has taken before. False: no memory.
[[nodiscard]] bool inheritCommandLine(const Text &path, const Text &name, const char16_t *own,
                                      Text &commandLine);

} // namespace sfx
