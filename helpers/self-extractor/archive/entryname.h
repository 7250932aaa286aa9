// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>

namespace sfx {

// Why a name cannot be the name of one folder or file on Windows.
enum class NameFault {
    None,
    Empty,
    TooLong,    // longer than 255 UTF-16 units
    Character,  // a separator, a stream or wildcard character, or a control character
    SpaceOrDot, // at the end; `.` and `..` too
    Device,     // CON, NUL, COM1, ..., also with an extension or a superscript digit
};

// Returns the first fault of a name of `size` UTF-16 units. A name without one stands for nothing
// but one folder or file. (Microsoft, "Naming Files, Paths, and Namespaces".)
NameFault faultOfComponent(const char16_t *name, std::size_t size);

// Whether the name has no fault.
bool isSafeComponent(const char16_t *name, std::size_t size);

// Whether a path with `/` between its components stays inside the folder that it is unpacked into:
// it is relative, every component is safe, and it has at most maxPathSize units.
bool isSafePath(const char16_t *path, std::size_t size);

// Where the last component of such a path begins: after the last `/`, or at 0.
inline std::size_t lastComponent(const char16_t *path, std::size_t size)
{
    while (size > 0 && path[size - 1] != u'/') {
        --size;
    }
    return size;
}

// Longest path in an archive. Windows allows 32767 units, including the private folder before it.
constexpr std::size_t maxPathSize = 30000;

} // namespace sfx
