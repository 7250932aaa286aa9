// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/start/processrights.h"

namespace sfx {

namespace {

constexpr std::uint32_t systemIntegrity = 0x4000; // winnt.h: SECURITY_MANDATORY_SYSTEM_RID

} // namespace

// High integrity does not count: a process with administrator's rights is elevated, too.
bool hasUsersRightsOnly(const ProcessRights &rights)
{
    return !rights.isElevated && !rights.isService && rights.integrity < systemIntegrity;
}

} // namespace sfx
