// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/decoding/decodermemory.h"

#include "helpers/self-extractor/base/memory.h"

namespace sfx {

namespace {

void *decoderAllocate(ISzAllocPtr, std::size_t size)
{
    return allocateMemory(size);
}

void decoderRelease(ISzAllocPtr, void *memory)
{
    releaseMemory(memory);
}

} // namespace

const ISzAlloc decoderMemory = {decoderAllocate, decoderRelease};

} // namespace sfx
