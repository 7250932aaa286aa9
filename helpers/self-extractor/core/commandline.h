// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>

namespace sfx {

/// The part of a Windows command line behind the program's name, verbatim, with the blanks in front
/// of it. The name ends at the first blank or tab outside quotes, as the C runtime has it
/// (Microsoft, "Parsing C command-line arguments": no backslash escapes in the name).
const char16_t *argumentTail(const char16_t *commandLine);

} // namespace sfx
