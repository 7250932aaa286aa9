// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>

namespace sfx {

/// Whether a name of `size` UTF-16 units can be one folder or file name on Windows and means just
/// that: not empty, not `.` or `..`, no separator, stream or wildcard character, no control
/// character, no blank or dot at its end, not a device (CON, NUL, COM1, ... also with an extension
/// or superscript digit), at most 255 units. (Microsoft, "Naming Files, Paths, and Namespaces".)
bool isSafeComponent(const char16_t *name, std::size_t size);

/// Whether a path with `/` between its components stays below the folder that it is unpacked into:
/// relative, every component safe, at most maxPathSize units.
bool isSafePath(const char16_t *path, std::size_t size);

/// Longest path inside an archive. Windows ends at 32767 units, the private folder in front
/// included.
constexpr std::size_t maxPathSize = 30000;

} // namespace sfx
