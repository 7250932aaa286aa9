// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/windows/failure.h"

namespace sfx {

// Starts `folder`\`name` with `folder` as its working directory. Waits until the program and
// everything that it started have ended. If this process is ended first, all of them end with it.
//
// The program gets its quoted path and the unchanged arguments of this process, the standard
// handles, and the way its window is to be shown. A program that asks for more rights is started
// through the shell, which asks the user. Returns true if it was started; `exitCode` is then the
// program's. Otherwise `failure` says why.
bool runProgram(const Text &folder, const Text &name, unsigned long &exitCode, Failure &failure);

} // namespace sfx
