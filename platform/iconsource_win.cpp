// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "platform/iconsource.h"

#include "platform/iconpixels_win.h"

ExtractedIcon extractNativeIcon(const QString &executable)
{
    return iconPixelsOf(executable);
}
