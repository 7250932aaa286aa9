// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdio>
#include <cstdlib>

// Ends the fuzzer with the text of the broken promise. The fuzzer's runtime keeps the input.
inline void require(bool holds, const char *promise)
{
    if (!holds) {
        std::fprintf(stderr, "broken promise: %s\n", promise);
        std::abort();
    }
}
