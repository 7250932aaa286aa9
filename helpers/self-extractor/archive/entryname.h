// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>

namespace sfx {

// Whether a name of `size` UTF-16 units can be the name of one folder or file on Windows, and
// stands for nothing else. It must not be empty, `.` or `..`, or longer than 255 units. It must not
// contain a separator, a stream or wildcard character, or a control character, or end with a space
// or a dot. It must not be a device (CON, NUL, COM1, ..., also with an extension or a superscript
// digit). (Microsoft, "Naming Files, Paths, and Namespaces".)
bool isSafeComponent(const char16_t *name, std::size_t size);

// Whether a path with `/` between its components stays inside the folder that it is unpacked into:
// it is relative, every component is safe, and it has at most maxPathSize units.
bool isSafePath(const char16_t *path, std::size_t size);

// Longest path in an archive. Windows allows 32767 units, including the private folder before it.
constexpr std::size_t maxPathSize = 30000;

} // namespace sfx
