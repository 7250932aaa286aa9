// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

// The rights of a private directory on Windows, in the language of security descriptors. This part
// needs no Windows.
//
// The owner is the user, not the Administrators group that owns the files of an elevated process: so
// the directory of a killed job can be told from those of other users. The user, the system and the
// administrators may do everything in the directory and in all that is created in it; the list
// inherits nothing. An elevated process has the same user as that user's other processes, so it
// also gives the directory a label: without high integrity, nobody writes there.
//
// `user` is a security identifier such as "S-1-5-21-1-2-3-1001". If it is empty, only the
// administrators and the system get access.
inline QString userOnlyRights(const QString &user, bool isElevated)
{
    const QString users = user.isEmpty() ? QString() : QStringLiteral("(A;OICI;FA;;;%1)").arg(user);
    return (user.isEmpty() ? QString() : "O:" + user)
        + QStringLiteral("D:P(A;OICI;FA;;;SY)(A;OICI;FA;;;BA)") + users
        + (isElevated ? QStringLiteral("S:(ML;OICI;NW;;;HI)") : QString());
}
