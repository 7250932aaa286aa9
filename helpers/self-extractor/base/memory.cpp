// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/base/memory.h"

#include <cstdlib>

namespace sfx {

void *allocateMemory(std::size_t size)
{
    return std::malloc(size);
}

void releaseMemory(void *memory)
{
    std::free(memory);
}

} // namespace sfx
