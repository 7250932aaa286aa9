// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>

namespace sfx {

// What a process may do, as its token says.
struct ProcessRights
{
    bool isElevated = true;
    bool isService = true;
    std::uint32_t integrity = UINT32_MAX; // the last number of the label's SID
};

// Whether a process has the rights of an ordinary program of its user. What the user may write must
// not become code with more rights.
bool hasUsersRightsOnly(const ProcessRights &rights);

} // namespace sfx
