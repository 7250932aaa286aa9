// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/start/accessrights.h"

namespace sfx {

namespace {

constexpr const char16_t *all = u"FA";
constexpr const char16_t *readAndExecute = u"FRFX";

// An entry that allows (A), also for everything that is created inside (OICI).
[[nodiscard]] bool allow(Text &list, const char16_t *what, const char16_t *whom)
{
    return list.append(u"(A;OICI;") && list.append(what) && list.append(u";;;") && list.append(whom)
        && list.append(u")");
}

// Windows checks the access of such tokens twice, and the second time the user does not count: an
// AppContainer needs an entry of its own, a restricted token one for a restricting SID. The SIDs
// for restricted (RC) and write-restricted code restrict only; they give nobody else access.
[[nodiscard]] bool allowSandbox(Text &list, const TokenFacts &token)
{
    return (token.appContainer.isEmpty() || allow(list, all, token.appContainer.data()))
        && (!token.isRestricted || (allow(list, all, u"RC") && allow(list, all, u"S-1-5-33")));
}

} // namespace

// The list inherits nothing (P). The SDDL name of the owner would not do for the user: an elevated
// process owns its files as Administrators.
//
// An elevated process has the same user as that user's other processes. As an administrator it does
// not need the user's right to write. Other elevated processes (of backup operators, for example)
// need it, so the label does more: without high integrity, nobody writes (NW).
bool describeRights(const TokenFacts &token, Text &rights)
{
    const bool onlyAsAdministrator = token.isElevated && token.isAdministrator;
    if (!rights.assign(u"D:P", 3) || !allow(rights, all, u"SY") || !allow(rights, all, u"BA")
        || !allow(rights, onlyAsAdministrator ? readAndExecute : all, token.user.data())
        || !allowSandbox(rights, token)) {
        return false;
    }
    // A process cannot give a label that is higher than its own.
    return !token.isElevated || !token.hasHighIntegrity || rights.append(u"S:(ML;OICI;NW;;;HI)");
}

} // namespace sfx
