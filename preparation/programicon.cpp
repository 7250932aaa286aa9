// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "preparation/programicon.h"

#include "helpers/pe/iconofprogram.h"
#include "platform/nativepath.h"

QByteArray iconFileOfProgram(const QString &path)
{
    const auto icon = pe::iconGroupOfProgram(toNativePath(path));
    if (icon.hasError() || !icon.value()) {
        return {};
    }
    return QByteArray(reinterpret_cast<const char *>(icon.value()->data()),
                      static_cast<qsizetype>(icon.value()->size()));
}
