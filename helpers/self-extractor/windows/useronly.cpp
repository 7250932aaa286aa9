// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/useronly.h"

#include "helpers/self-extractor/start/accessrights.h"
#include "helpers/self-extractor/windows/token.h"

#include <sddl.h>

namespace sfx {

namespace {

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

} // namespace sfx
