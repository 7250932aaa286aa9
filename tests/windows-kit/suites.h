// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/windows-kit/row.h"

#include <string>
#include <vector>

namespace kit {

struct NamedResult
{
    std::string name;
    Result result;
    std::uint64_t milliseconds = 0;
};

// The names of the test programs of the kit, without ".exe".
std::vector<std::wstring> suiteNames(const std::wstring &kit);

// Runs a test program. The first result is that of the whole program; the others are its rows that
// failed or were skipped.
std::vector<NamedResult> runSuite(const Place &place, const std::wstring &suite);

} // namespace kit
