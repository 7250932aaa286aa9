// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/fileowner.h"

namespace sfx {

namespace {

class Owner
{
public:
    explicit Owner(HANDLE file)
    {
        DWORD size = 0;
        BOOL defaulted = FALSE;
        if (!GetKernelObjectSecurity(file, OWNER_SECURITY_INFORMATION, m_descriptor,
                                     sizeof m_descriptor, &size)
            || !GetSecurityDescriptorOwner(m_descriptor, &m_owner, &defaulted)) {
            m_owner = nullptr;
        }
    }
    Owner(const Owner &) = delete;
    Owner &operator=(const Owner &) = delete;

    bool equals(const Owner &other) const { return equals(other.m_owner); }
    bool equals(PSID other) const
    {
        return m_owner != nullptr && other != nullptr && EqualSid(m_owner, other);
    }

private:
    static constexpr std::size_t descriptorSize = sizeof(SECURITY_DESCRIPTOR)
        + SECURITY_MAX_SID_SIZE;
    alignas(SECURITY_DESCRIPTOR) unsigned char m_descriptor[descriptorSize] = {};
    PSID m_owner = nullptr;
};

} // namespace

bool haveSameOwner(HANDLE one, HANDLE other)
{
    return Owner(one).equals(Owner(other));
}

bool belongsToUser(HANDLE file)
{
    HANDLE rawToken = nullptr;
    if (!OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &rawToken)) {
        return false;
    }
    const Handle token(rawToken);
    alignas(TOKEN_USER) unsigned char data[sizeof(TOKEN_USER) + SECURITY_MAX_SID_SIZE];
    DWORD size = 0;
    return GetTokenInformation(token.get(), TokenUser, data, sizeof data, &size)
        && Owner(file).equals(reinterpret_cast<const TOKEN_USER *>(data)->User.Sid);
}

} // namespace sfx
