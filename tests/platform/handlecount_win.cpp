// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/platform/handlecount_win.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include <windows.h>

namespace {

// The low word of a handle is its index in the table.
unsigned long placeOf(const void *handle)
{
    return static_cast<unsigned long>(reinterpret_cast<std::uintptr_t>(handle) & 0xFFFF);
}

unsigned long nextBitmapPlace()
{
    std::array<HBITMAP, 64> bitmaps = {};
    unsigned long highest = 0;
    for (HBITMAP &bitmap : bitmaps) {
        bitmap = CreateBitmap(1, 1, 1, 1, nullptr);
        highest = std::max(highest, placeOf(bitmap));
    }
    for (const HBITMAP bitmap : bitmaps) {
        DeleteObject(bitmap);
    }
    return highest;
}

unsigned long nextIconPlace()
{
    std::array<HICON, 64> icons = {};
    unsigned long highest = 0;
    const std::array<BYTE, 32> bits = {};
    for (HICON &icon : icons) {
        icon = CreateIcon(nullptr, 16, 16, 1, 1, bits.data(), bits.data());
        highest = std::max(highest, placeOf(icon));
    }
    for (const HICON icon : icons) {
        DestroyIcon(icon);
    }
    return highest;
}

} // namespace

HandleCount countHandles()
{
    return {GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS),
            GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS), nextBitmapPlace(),
            nextIconPlace()};
}
