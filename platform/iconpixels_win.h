// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/platform.h"

// The icon with index 0 of `executable` as the Windows shell gives it: the small one, or the large
// one when there is no small one; in the size that it has there. An icon without any opacity is opaque where
// its mask is clear.
ExtractedIcon iconPixelsOf(const QString &executable);
