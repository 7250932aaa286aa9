// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/windows/failure.h"

namespace sfx {

/// Starts `folder`\`name` with `folder` as its working directory and waits for its end and for the
/// end of all that it started. If this process is ended meanwhile, all of them end with it.
///
/// It gets the arguments of this process as they stand behind its own quoted path, the standard
/// handles, and the way its window is to be shown. A program that asks for more rights is
/// started through the shell, which puts the question to the user. True: `exitCode` is the
/// program's own; false: `failure` says why it did not start.
bool runProgram(const Text &folder, const Text &name, unsigned long &exitCode, Failure &failure);

} // namespace sfx
