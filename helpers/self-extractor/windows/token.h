// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/windows/win32.h"

namespace sfx {

// One fact about a token: a structure, and the SID that it points to.
template <typename Information>
class TokenFact
{
public:
    TokenFact(HANDLE token, TOKEN_INFORMATION_CLASS which)
    {
        DWORD size = 0;
        m_isKnown = GetTokenInformation(token, which, m_data, sizeof m_data, &size);
    }

    explicit operator bool() const { return m_isKnown; }
    const Information &operator*() const { return *reinterpret_cast<const Information *>(m_data); }

private:
    alignas(void *) unsigned char m_data[sizeof(Information) + SECURITY_MAX_SID_SIZE] = {};
    bool m_isKnown;
};

// The level of integrity (winnt.h: SECURITY_MANDATORY_HIGH_RID and others); 0 if it is not known.
inline DWORD integrityOf(HANDLE token)
{
    const TokenFact<TOKEN_MANDATORY_LABEL> label(token, TokenIntegrityLevel);
    if (!label) {
        return 0;
    }
    const PSID sid = (*label).Label.Sid;
    const UCHAR count = *GetSidSubAuthorityCount(sid);
    return count != 0 ? *GetSidSubAuthority(sid, DWORD{count} - 1) : 0;
}

// Whether this process belongs to the group.
inline bool isMemberOf(WELL_KNOWN_SID_TYPE group)
{
    alignas(void *) unsigned char sid[SECURITY_MAX_SID_SIZE];
    DWORD size = sizeof sid;
    BOOL isMember = FALSE;
    return CreateWellKnownSid(group, nullptr, sid, &size)
        && CheckTokenMembership(nullptr, sid, &isMember) && isMember;
}

} // namespace sfx
