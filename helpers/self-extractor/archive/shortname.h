// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>

namespace sfx {

// Whether the last component of a path (with `/` between components) could be a short name that
// Windows gives to another entry: LONGFI~1.TXT. On disks with such names, the entry must be created
// before others, which then get other short names.
bool couldBeShortName(const char16_t *path, std::size_t size);

} // namespace sfx
