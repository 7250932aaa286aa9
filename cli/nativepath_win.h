// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/pe/nativepath.h"

#include <QDir>
#include <QString>

// Returns `path` in the form that is not limited to 260 characters.
inline std::wstring unlimitedPath(const QString &path)
{
    return pe::extendedPath(QDir::toNativeSeparators(path).toStdWString());
}
