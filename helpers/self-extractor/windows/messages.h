// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/windows/failure.h"

namespace sfx {

// Tells the user about a failure, in Chinese on a Chinese Windows, otherwise in English.
//
// If the process has a standard error (a console, a pipe or a file), it gets one line and no
// message box is shown, so scripts never hang. Without a standard error, as after a double-click, a
// message box is shown, unless the block contains Silent="1", the user cancelled, or no user can see
// it, as in a service.
void showFailure(const Failure &failure, const Text &title, bool silent);

} // namespace sfx
