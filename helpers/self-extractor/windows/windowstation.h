// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/windows/systemlibrary.h"

namespace sfx {

// Whether a user can see the windows of this process. Services and tasks that run without a user
// have windows too, but nobody can see or close them. `user32` is the loaded USER32.
bool hasVisibleWindows(const SystemLibrary &user32);

} // namespace sfx
