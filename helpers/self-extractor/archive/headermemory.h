// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "7zTypes.h"

#include <cstddef>

namespace sfx {

// The heap for the tables of an archive's header, with a maximum. 7-Zip allocates by the sizes in
// the header before they can be checked, so a forged header may request any amount.
class HeaderMemory
{
public:
    explicit HeaderMemory(std::size_t budget);
    HeaderMemory(const HeaderMemory &) = delete;
    HeaderMemory &operator=(const HeaderMemory &) = delete;

    // Valid while this object exists.
    ISzAllocPtr interface() const { return &m_entry.functions; }

private:
    struct Entry
    {
        ISzAlloc functions; // must be first: 7-Zip passes a pointer to it
        HeaderMemory *owner;
    };

    static void *allocate(ISzAllocPtr self, std::size_t size);
    static void release(ISzAllocPtr self, void *memory);

    Entry m_entry;
    std::size_t m_left;
};

} // namespace sfx
