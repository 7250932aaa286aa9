// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>

namespace sfx {

// When the system was started, in 100 ns since 1601; never 0. The same at every call until the next
// start of the system, unless the clock is set.
std::uint64_t systemStart();

} // namespace sfx
