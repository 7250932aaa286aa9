// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/windows/win32.h"

namespace sfx {

// The owner of a file or folder, whose handle has READ_CONTROL.
class FileOwner
{
public:
    explicit FileOwner(HANDLE file);
    FileOwner(const FileOwner &) = delete;
    FileOwner &operator=(const FileOwner &) = delete;

    // Returns false if one of the two is not known.
    bool equals(PSID other) const
    {
        return m_owner != nullptr && other != nullptr && EqualSid(m_owner, other);
    }
    bool equals(const FileOwner &other) const { return equals(other.m_owner); }

private:
    static constexpr std::size_t descriptorSize = sizeof(SECURITY_DESCRIPTOR)
        + SECURITY_MAX_SID_SIZE;
    alignas(SECURITY_DESCRIPTOR) unsigned char m_descriptor[descriptorSize] = {};
    PSID m_owner = nullptr;
};

// True if both have the same owner SID; the handles need READ_CONTROL. An elevated process owns its
// files as Administrators, so it does not trust files that an unelevated one created. File systems
// without owners report "everyone".
bool haveSameOwner(HANDLE one, HANDLE other);

} // namespace sfx
