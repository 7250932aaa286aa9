// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/windows/win32.h"

namespace sfx {

// Security attributes for a folder: the user of this process, the system and administrators have
// all rights, and nobody else has any. Everything created in the folder inherits them.
class UserOnly
{
public:
    UserOnly();

    // Valid while this object exists. nullptr if they could not be created; then the folder gets
    // the rights of its parent, the user's own temporary folder.
    SECURITY_ATTRIBUTES *attributes() { return m_complete ? &m_attributes : nullptr; }

private:
    bool build();

    SECURITY_ATTRIBUTES m_attributes = {};
    SECURITY_DESCRIPTOR m_descriptor = {};
    alignas(ACL) unsigned char m_acl[512] = {};
    bool m_complete;
};

} // namespace sfx
