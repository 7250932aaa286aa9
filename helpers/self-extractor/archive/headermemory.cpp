// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/archive/headermemory.h"

#include "helpers/self-extractor/base/memory.h"

namespace sfx {

namespace {

// Stored before each block of HeaderMemory, so that release() knows the block's size.
struct alignas(16) Prefix
{
    std::size_t size;
};

} // namespace

HeaderMemory::HeaderMemory(std::size_t budget) : m_entry{{allocate, release}, this}, m_left(budget)
{
}

void *HeaderMemory::allocate(ISzAllocPtr self, std::size_t size)
{
    HeaderMemory *owner = reinterpret_cast<const Entry *>(self)->owner;
    if (size > owner->m_left) {
        return nullptr;
    }
    auto *prefix = static_cast<Prefix *>(allocateMemory(sizeof(Prefix) + size));
    if (prefix == nullptr) {
        return nullptr;
    }
    owner->m_left -= size;
    prefix->size = size;
    return prefix + 1;
}

void HeaderMemory::release(ISzAllocPtr self, void *memory)
{
    if (memory == nullptr) {
        return;
    }
    Prefix *prefix = static_cast<Prefix *>(memory) - 1;
    reinterpret_cast<const Entry *>(self)->owner->m_left += prefix->size;
    releaseMemory(prefix);
}

} // namespace sfx
