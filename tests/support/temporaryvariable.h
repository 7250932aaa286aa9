// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/support/onwindows.h"

// The environment variable that names the temporary directory.
constexpr const char *temporaryDirectoryVariable = onWindows ? "TMP" : "TMPDIR";
