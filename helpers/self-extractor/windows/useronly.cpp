// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/useronly.h"

#include "helpers/self-extractor/start/accessrights.h"

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

bool hasHighIntegrity(HANDLE token)
{
    const TokenFact<TOKEN_MANDATORY_LABEL> label(token, TokenIntegrityLevel);
    if (!label) {
        return false;
    }
    const PSID sid = (*label).Label.Sid;
    const UCHAR count = *GetSidSubAuthorityCount(sid);
    return count != 0
        && *GetSidSubAuthority(sid, DWORD{count} - 1) >= DWORD{SECURITY_MANDATORY_HIGH_RID};
}

bool isAdministrator()
{
    alignas(void *) unsigned char administrators[SECURITY_MAX_SID_SIZE];
    DWORD size = sizeof administrators;
    BOOL isMember = FALSE;
    return CreateWellKnownSid(WinBuiltinAdministratorsSid, nullptr, administrators, &size)
        && CheckTokenMembership(nullptr, administrators, &isMember) && isMember;
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
    facts.hasHighIntegrity = facts.isElevated && hasHighIntegrity(token.get());
    facts.isAdministrator = facts.isElevated && isAdministrator();
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

} // namespace sfx
