// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/systemstart.h"

#include "helpers/self-extractor/windows/win32.h"

#include <winternl.h>

namespace sfx {

std::uint64_t systemStart()
{
    SYSTEM_TIMEOFDAY_INFORMATION times = {};
    NtQuerySystemInformation(SystemTimeOfDayInformation, &times, sizeof times, nullptr);
    const auto start = static_cast<std::uint64_t>(times.BootTime.QuadPart);
    return start != 0 ? start : 1;
}

} // namespace sfx
