// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QList>
#include <QString>

// The owner and the access list of a folder on Windows, and what follows from them. This part needs
// no Windows; trust_win.cpp reads the records. Users and groups are security identifiers in their
// text form: "S-1-5-18".

// An entry that allows something in the folder itself. Entries that deny are left out: at worst
// others then seem to have a right that they do not have, and a file is checked that need not be.
struct AccessEntry
{
    QString who;
    quint32 rights = 0; // the access mask
};

struct FolderAccess
{
    QString owner;
    bool everybodyMayDoAll = false; // there is no access list
    QList<AccessEntry> entries;
};

// Returns true for the user with the identifier `user`, the system, the administrators, and
// Windows' own installer: a program of theirs is as trustworthy as this user's own.
bool isTrusted(const QString &who, const QString &user);

// Returns true if somebody who is not trusted can create or replace files in the folder, or can
// give himself that right.
bool othersMayWrite(const FolderAccess &folder, const QString &user);

// Returns true if the file of `owner` in the folder may be used as a helper. In a folder where only
// trusted users can write, nothing is checked. The file's own access list does not matter: in a
// folder that gives every new file such rights, as on a second drive, others could write to our own
// copy, too.
bool isUsable(const FolderAccess &folder, const QString &owner, const QString &user);
