// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QStringList>

// The resource editor's two command lines. A mask is "type,name,language"; an empty field means
// "any". With "-log NUL" the editor writes no log file.

// Arguments to delete every icon group of `executable`, in place.
QStringList deleteIconsArguments(const QString &executable);

// Arguments to add the icon file `icon` to `executable`, in place, as the group MAINICON without a
// language.
QStringList addIconArguments(const QString &executable, const QString &icon);
