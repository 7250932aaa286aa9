// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QStringList>

// The resource editor's two command lines. A mask is "type,name,language" with empty fields for
// "any"; "-log NUL" keeps the editor from writing a log file.

// Deletes every icon group of `executable`, in place.
QStringList deleteIconsArguments(const QString &executable);

// Adds the icon file `icon` to `executable`, in place, as the group MAINICON without a language.
QStringList addIconArguments(const QString &executable, const QString &icon);
