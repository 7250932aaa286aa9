// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/pe/file.h"

// Completes a program that was just linked with cmake/windows/loadconfig.cpp:
// - the header's data directory names the load configuration;
// - Windows runs the program from its page file if it lies on a removable disk or a network drive,
//   so that the program goes on if the drive is removed;
// - the header's time stamp is a number made from the program's bytes;
// - the check sum is right again.
// Everything else keeps its bytes. It fails, and changes nothing, if the program is already
// finished.
pe::Result<pe::Done> finishProgram(pe::File &file);
