// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <array>
#include <cstdint>

// The load configuration of a 64-bit program (PE format, "Load Configuration Layout"), with the one
// field that our programs set. All other fields are 0: the program claims no security cookie, no
// control flow guard and nothing else. Windows takes any size of the structure from 0x70; this is
// the size of Windows 11's, so every version finds the fields that it looks for.
struct alignas(8) LoadConfig
{
    std::uint32_t size = sizeof(LoadConfig);
    // In a program that is not finished yet, so that finish-program finds the structure: the programs
    // of the bundle, which are finished, contain one with 0.
    std::uint32_t timeStamp = 0;
    std::array<std::uint8_t, 70> unset{};
    // LOAD_LIBRARY_SEARCH_SYSTEM32: since Windows 10 1607 the loader takes the libraries that the
    // program imports from the system's folder only, and not from the program's own folder.
    std::uint16_t dependentLoadFlags = 0x800;
    std::array<std::uint8_t, 240> unsetToo{};
};

constexpr std::uint32_t unfinishedTimeStamp = 0x6c6f6164;

static_assert(sizeof(LoadConfig) == 0x140);
