// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>

namespace sfx {

// Fills `bytes` from the system's random generator. Returns false on failure, with the reason in
// GetLastError().
[[nodiscard]] bool randomBytes(void *bytes, std::size_t size);

} // namespace sfx
