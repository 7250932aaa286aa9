// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>

namespace sfx {

// Whether files are closed so slowly that other threads should do it: if at least 20 ms were lost
// with it, and at least 0.3 ms with each file. Without a virus scanner it takes a tenth of that, and
// handing a file over to another thread would cost more. `ticks` is the time that it took to close
// `files`, with `ticksPerSecond`.
constexpr bool isClosingSlow(std::uint64_t ticks, std::uint64_t files, std::uint64_t ticksPerSecond)
{
    return ticks >= ticksPerSecond / 50 && ticks >= files * (ticksPerSecond * 3 / 10000);
}

} // namespace sfx
