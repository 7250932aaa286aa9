// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/windows/failure.h"

namespace sfx {

/// Tells the user about a failure, in Chinese on a Chinese Windows, else in English.
///
/// If the process has a standard error (a console, a pipe, a file), one line goes there and no box
/// is shown, so that scripts never hang. A program that was double-clicked has none: then it is a
/// message box, unless the block says Silent="1" or it was the user who wanted no more.
void showFailure(const Failure &failure, const Text &title, bool silent);

} // namespace sfx
