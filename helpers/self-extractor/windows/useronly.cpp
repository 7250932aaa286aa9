// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/useronly.h"

#include "helpers/self-extractor/base/text.h"

#include <sddl.h>

namespace sfx {

namespace {

// Appends the user's SID in the form S-1-5-21-... The SDDL name of the owner would not do: an
// elevated process owns its files as Administrators.
[[nodiscard]] bool appendUser(Text &text)
{
    HANDLE rawToken = nullptr;
    if (!OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &rawToken)) {
        return false;
    }
    const Handle token(rawToken);
    alignas(TOKEN_USER) unsigned char user[sizeof(TOKEN_USER) + SECURITY_MAX_SID_SIZE];
    DWORD size = 0;
    wchar_t *sid = nullptr;
    if (!GetTokenInformation(token.get(), TokenUser, user, sizeof user, &size)
        || !ConvertSidToStringSidW(reinterpret_cast<TOKEN_USER *>(user)->User.Sid, &sid)) {
        return false;
    }
    const bool appended = text.append(reinterpret_cast<const char16_t *>(sid));
    LocalFree(sid);
    return appended;
}

} // namespace

// An access list that inherits nothing (P). Each entry allows (A) everything (FA), also for
// everything that is created inside (OICI): to the system (SY), to administrators (BA), and to the user.
UserOnly::UserOnly()
{
    Text rights;
    if (rights.append(u"D:P(A;OICI;FA;;;SY)(A;OICI;FA;;;BA)(A;OICI;FA;;;") && appendUser(rights)
        && rights.append(u")")) {
        m_attributes.nLength = sizeof m_attributes;
        ConvertStringSecurityDescriptorToSecurityDescriptorW(wide(rights.data()), SDDL_REVISION_1,
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
