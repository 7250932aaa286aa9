// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/useronly.h"

namespace sfx {

namespace {

bool allow(ACL *acl, PSID who)
{
    return AddAccessAllowedAceEx(acl, ACL_REVISION, OBJECT_INHERIT_ACE | CONTAINER_INHERIT_ACE,
                                 FILE_ALL_ACCESS, who);
}

bool allowWellKnown(ACL *acl, WELL_KNOWN_SID_TYPE type)
{
    alignas(SID) unsigned char sid[SECURITY_MAX_SID_SIZE];
    DWORD size = sizeof sid;
    return CreateWellKnownSid(type, nullptr, sid, &size) && allow(acl, sid);
}

} // namespace

UserOnly::UserOnly() : m_complete(build()) {}

bool UserOnly::build()
{
    HANDLE rawToken = nullptr;
    if (!OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &rawToken)) {
        return false;
    }
    const Handle token(rawToken);
    alignas(TOKEN_USER) unsigned char user[sizeof(TOKEN_USER) + SECURITY_MAX_SID_SIZE];
    DWORD size = 0;
    auto *acl = reinterpret_cast<ACL *>(m_acl);
    if (!GetTokenInformation(token.get(), TokenUser, user, sizeof user, &size)
        || !InitializeAcl(acl, sizeof m_acl, ACL_REVISION)
        || !allow(acl, reinterpret_cast<TOKEN_USER *>(user)->User.Sid)
        || !allowWellKnown(acl, WinLocalSystemSid)
        || !allowWellKnown(acl, WinBuiltinAdministratorsSid)
        || !InitializeSecurityDescriptor(&m_descriptor, SECURITY_DESCRIPTOR_REVISION)
        || !SetSecurityDescriptorDacl(&m_descriptor, TRUE, acl, FALSE)
        || !SetSecurityDescriptorControl(&m_descriptor, SE_DACL_PROTECTED, SE_DACL_PROTECTED)) {
        return false;
    }
    m_attributes.nLength = sizeof m_attributes;
    m_attributes.lpSecurityDescriptor = &m_descriptor;
    return true;
}

} // namespace sfx
