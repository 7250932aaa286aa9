// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/text.h"
#include "helpers/self-extractor/windows/win32.h"

namespace sfx {

// Security attributes for a private folder and its lock file: the user of this process, the system
// and administrators may access it, and nobody else (start/accessrights.h has the details).
// Everything created in the folder inherits them.
class UserOnly
{
public:
    UserOnly();
    UserOnly(const UserOnly &) = delete;
    UserOnly &operator=(const UserOnly &) = delete;
    ~UserOnly();

    // Valid while this object exists. nullptr if they could not be created; then the folder gets
    // the rights of its parent, the user's own temporary folder.
    SECURITY_ATTRIBUTES *attributes();
    // The same as a text; may be empty.
    const Text &rights() const { return m_rights; }

private:
    Text m_rights;
    SECURITY_ATTRIBUTES m_attributes = {};
};

} // namespace sfx
