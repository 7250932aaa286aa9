// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "platform/accessrules.h"

#include <algorithm>

namespace {

// FILE_ADD_FILE, FILE_DELETE_CHILD, WRITE_DAC, WRITE_OWNER, GENERIC_ALL, GENERIC_WRITE. Who may
// only add folders (FILE_ADD_SUBDIRECTORY) cannot plant a program.
constexpr quint32 writing = 0x2 | 0x40 | 0x40000 | 0x80000 | 0x10000000 | 0x40000000;

const QString localSystem = QStringLiteral("S-1-5-18");
const QString administrators = QStringLiteral("S-1-5-32-544");
const QString trustedInstaller
    = QStringLiteral("S-1-5-80-956008885-3418522649-1831038044-1853292631-2271478464");
// Stands for the owner, who is checked anyway.
const QString ownerRights = QStringLiteral("S-1-3-4");

} // namespace

bool isTrusted(const QString &who, const QString &user)
{
    if (who.isEmpty()) {
        return false; // the system did not tell
    }
    return who == user || who == localSystem || who == administrators || who == trustedInstaller;
}

bool othersMayWrite(const FolderAccess &folder, const QString &user)
{
    if (folder.everybodyMayDoAll || !isTrusted(folder.owner, user)) {
        return true; // an owner can always change the access list
    }
    return std::any_of(folder.entries.begin(), folder.entries.end(), [&](const AccessEntry &entry) {
        return (entry.rights & writing) != 0 && entry.who != ownerRights
            && !isTrusted(entry.who, user);
    });
}

bool isUsable(const FolderAccess &folder, const QString &owner, const QString &user)
{
    return !othersMayWrite(folder, user) || isTrusted(owner, user);
}
