// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/fast-archiver/failure.h"
#include "helpers/fast-archiver/packoptions.h"

#include <vector>

namespace fast {

// The arguments without the program's name, each as the system gave it.
using Arguments = std::vector<pe::NativePath>;

// What one run must do.
struct Request
{
    pe::NativePath archive;
    pe::NativePath folder; // its content is packed; ends with a separator
    PackOptions options;
};

// Reads the nine arguments that the engine gives its archiver:
//   a -t7z ARCHIVE FOLDER/* -r -mx=LEVEL -m0=ZSTD[:PARAMETER...] -bsp1 -ssc
// LEVEL is a digit; it chooses libzstd's level. README.md lists the parameters.
Outcome<Request> parseArguments(const Arguments &arguments);

} // namespace fast
