// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/useronly.h"

#include "helpers/self-extractor/start/accessrights.h"
#include "helpers/self-extractor/windows/shellstart.h"

#include <sddl.h>

namespace sfx {

namespace {

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

[[nodiscard]] bool appendSid(Text &text, PSID sid)
{
    wchar_t *spelled = nullptr;
    if (!ConvertSidToStringSidW(sid, &spelled)) {
        return false;
    }
    const bool appended = text.append(reinterpret_cast<const char16_t *>(spelled));
    LocalFree(spelled);
    return appended;
}

// The level of integrity (winnt.h: SECURITY_MANDATORY_HIGH_RID and others); 0 if it is not known.
DWORD integrityOf(HANDLE token)
{
    const TokenFact<TOKEN_MANDATORY_LABEL> label(token, TokenIntegrityLevel);
    if (!label) {
        return 0;
    }
    const PSID sid = (*label).Label.Sid;
    const UCHAR count = *GetSidSubAuthorityCount(sid);
    return count != 0 ? *GetSidSubAuthority(sid, DWORD{count} - 1) : 0;
}

bool isMemberOf(WELL_KNOWN_SID_TYPE group)
{
    alignas(void *) unsigned char sid[SECURITY_MAX_SID_SIZE];
    DWORD size = sizeof sid;
    BOOL isMember = FALSE;
    return CreateWellKnownSid(group, nullptr, sid, &size)
        && CheckTokenMembership(nullptr, sid, &isMember) && isMember;
}

[[nodiscard]] bool readToken(TokenFacts &facts)
{
    HANDLE rawToken = nullptr;
    if (!OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &rawToken)) {
        return false;
    }
    const Handle token(rawToken);
    const TokenFact<TOKEN_USER> user(token.get(), TokenUser);
    const TokenFact<TOKEN_ELEVATION_TYPE> elevation(token.get(), TokenElevationType);
    // Windows 8 and later; without an AppContainer, the SID is null.
    const TokenFact<TOKEN_APPCONTAINER_INFORMATION> container(token.get(), TokenAppContainerSid);
    facts.isElevated = elevation && *elevation == TokenElevationTypeFull;
    facts.hasHighIntegrity = facts.isElevated
        && integrityOf(token.get()) >= DWORD{SECURITY_MANDATORY_HIGH_RID};
    facts.isAdministrator = facts.isElevated && isMemberOf(WinBuiltinAdministratorsSid);
    facts.isRestricted = IsTokenRestricted(token.get());
    return user && appendSid(facts.user, (*user).User.Sid)
        && (!container || (*container).TokenAppContainer == nullptr
            || appendSid(facts.appContainer, (*container).TokenAppContainer));
}

} // namespace

UserOnly::UserOnly()
{
    TokenFacts facts;
    if (readToken(facts) && describeRights(facts, m_rights)) {
        m_attributes.nLength = sizeof m_attributes;
        ConvertStringSecurityDescriptorToSecurityDescriptorW(wide(m_rights.data()), SDDL_REVISION_1,
                                                             &m_attributes.lpSecurityDescriptor,
                                                             nullptr);
    }
}

UserOnly::~UserOnly()
{
    LocalFree(m_attributes.lpSecurityDescriptor);
}

SECURITY_ATTRIBUTES *UserOnly::attributes()
{
    return m_attributes.lpSecurityDescriptor != nullptr ? &m_attributes : nullptr;
}

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
