// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/text.h"

namespace sfx {

// What a private folder's access rights depend on: facts about the token of a process.
struct TokenFacts
{
    bool isElevated = false;       // the stronger one of a user's two tokens
    bool isAdministrator = false;  // the group is enabled
    bool hasHighIntegrity = false; // or more
    bool isRestricted = false;     // it has restricting SIDs
    Text user;                     // its SID: S-1-5-21-...
    Text appContainer;             // its SID; empty outside of an AppContainer
};

// Describes the rights in Microsoft's security descriptor definition language. The user, the system
// and administrators have all rights, and nobody else has any. If the user's other processes have
// fewer rights than this one, they may read and execute, but not write. Returns false if there is
// not enough memory.
[[nodiscard]] bool describeRights(const TokenFacts &token, Text &rights);

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
