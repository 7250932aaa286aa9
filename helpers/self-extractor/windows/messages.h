// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/windows/failure.h"

namespace sfx {

// Tells the user about a failure, in Chinese on a Chinese Windows, otherwise in English.
//
// If the process has a standard error (a console, a pipe or a file), it gets one line. Without one,
// as after a double-click, there may be a message box: see start/notice.h. None is shown where no
// user can see it, as in a service.
void showFailure(const Failure &failure, const Text &title, bool silent);

} // namespace sfx
