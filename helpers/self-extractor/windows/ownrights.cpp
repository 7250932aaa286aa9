// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/ownrights.h"

#include "helpers/self-extractor/windows/shellstart.h"
#include "helpers/self-extractor/windows/token.h"

namespace sfx {

ProcessRights processRights()
{
    ProcessRights rights;
    HANDLE rawToken = nullptr;
    if (!OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &rawToken)) {
        return rights;
    }
    const Handle token(rawToken);
    rights.isElevated = isElevated();
    rights.isService = isMemberOf(WinServiceSid);
    rights.integrity = integrityOf(token.get());
    return rights;
}

} // namespace sfx
