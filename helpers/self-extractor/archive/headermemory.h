// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "7zTypes.h"

#include <cstddef>

namespace sfx {

/// The heap for the tables of an archive's header, up to a budget: the sizes in a header are read
/// before they can be checked, so a forged one may ask for anything.
class HeaderMemory
{
public:
    explicit HeaderMemory(std::size_t budget);
    HeaderMemory(const HeaderMemory &) = delete;
    HeaderMemory &operator=(const HeaderMemory &) = delete;

    /// Valid as long as this object.
    ISzAllocPtr interface() const { return &m_entry.functions; }

private:
    struct Entry
    {
        ISzAlloc functions; // first: 7-Zip hands back a pointer to it
        HeaderMemory *owner;
    };

    static void *allocate(ISzAllocPtr self, std::size_t size);
    static void release(ISzAllocPtr self, void *memory);

    Entry m_entry;
    std::size_t m_left;
};

} // namespace sfx
