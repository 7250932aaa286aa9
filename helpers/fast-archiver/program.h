// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/fast-archiver/arguments.h"

namespace fast {

// The whole program: makes the archive, prints the progress and the outcome, and returns the exit
// status.
int runArchiverProgram(const Arguments &arguments);

} // namespace fast
