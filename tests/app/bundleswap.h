// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/support/builtfile.h"

#include <QResource>

// Removes the bundle from the resource system, as in a build without a bundle.
inline void removeBundle()
{
    Q_CLEANUP_RESOURCE(kestrelpack);
}

inline void restoreBundle()
{
    Q_INIT_RESOURCE(kestrelpack);
}

// Registers a bundle that contains only an empty style sheet.
inline bool useEmptySheet()
{
    removeBundle();
    return QResource::registerResource(builtFile(KESTRELPACK_EMPTY_SHEET));
}

inline void dropEmptySheet()
{
    QResource::unregisterResource(builtFile(KESTRELPACK_EMPTY_SHEET));
    restoreBundle();
}
