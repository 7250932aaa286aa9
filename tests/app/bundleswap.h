// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QResource>

// Takes the bundle out of the resource system, as in a build without it.
inline void removeBundle()
{
    Q_CLEANUP_RESOURCE(kestrelpack);
}

inline void restoreBundle()
{
    Q_INIT_RESOURCE(kestrelpack);
}

// A bundle with nothing but an empty style sheet.
inline bool useEmptySheet()
{
    removeBundle();
    return QResource::registerResource(QStringLiteral(KESTRELPACK_EMPTY_SHEET));
}

inline void dropEmptySheet()
{
    QResource::unregisterResource(QStringLiteral(KESTRELPACK_EMPTY_SHEET));
    restoreBundle();
}
