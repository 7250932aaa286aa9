// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/pe/result.h"

namespace pe {

// Makes an Error with the system's message for the call that has just failed. Call it at once: any other
// call may change the system's error code.
Error systemError(ErrorKind kind, const char *what);

} // namespace pe
