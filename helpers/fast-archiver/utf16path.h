// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace fast {

// Converts a file name from UTF-8. Returns nothing if it is not valid UTF-8, or contains a
// backslash, which would be a separator when the archive is unpacked.
std::optional<std::u16string> utf16NameOf(std::string_view name);

} // namespace fast
