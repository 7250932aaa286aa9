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

} // namespace sfx
