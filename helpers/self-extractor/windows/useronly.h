// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/windows/win32.h"

namespace sfx {

/// Security attributes for a folder that the user of this process, the system and administrators
/// have all rights in, and nobody else has any; what is made inside inherits them.
class UserOnly
{
public:
    UserOnly();

    /// Valid as long as this object; nullptr when they could not be built, which leaves the rights
    /// of the parent folder (the user's own temporary folder) in force.
    SECURITY_ATTRIBUTES *attributes() { return m_complete ? &m_attributes : nullptr; }

private:
    bool build();

    SECURITY_ATTRIBUTES m_attributes = {};
    SECURITY_DESCRIPTOR m_descriptor = {};
    alignas(ACL) unsigned char m_acl[512] = {};
    bool m_complete;
};

} // namespace sfx
