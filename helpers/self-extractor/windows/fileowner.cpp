// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/fileowner.h"

namespace sfx {

FileOwner::FileOwner(HANDLE file)
{
    DWORD size = 0;
    BOOL defaulted = FALSE;
    if (!GetKernelObjectSecurity(file, OWNER_SECURITY_INFORMATION, m_descriptor,
                                 sizeof m_descriptor, &size)
        || !GetSecurityDescriptorOwner(m_descriptor, &m_owner, &defaulted)) {
        m_owner = nullptr;
    }
}

bool haveSameOwner(HANDLE one, HANDLE other)
{
    return FileOwner(one).equals(FileOwner(other));
}

} // namespace sfx
