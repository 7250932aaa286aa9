// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/pe/result.h"

namespace pe {

// An Error with what the system says of the call that has just failed, in its own words. To be asked
// at once, before any other call changes it.
Error systemError(ErrorKind kind, const char *what);

} // namespace pe
