// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/iconsource.h"

// Returns the icon with index 0 of `executable` from the Windows shell: the small one, or the large
// one if there is no small one, in its original size. If the icon has no alpha values, its mask is
// used instead (see iconmask.h).
ExtractedIcon iconPixelsOf(const QString &executable);
