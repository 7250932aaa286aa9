// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/status.h"
#include "helpers/self-extractor/base/text.h"
#include "helpers/self-extractor/exitcodes.h"

#include <cstdint>

namespace sfx {

// Why no program was started: the step that failed, and the system's error, read immediately.
struct Failure
{
    ExitCode code = ExitCode::Damaged;
    unsigned long systemError = 0;  // from GetLastError(); 0: it was not a system call
    std::uint64_t missingBytes = 0; // missing space on the disk; 0: not known
    Text subject;                   // the file or folder concerned; may be empty
};

// The exit code for a status other than Ok.
ExitCode exitCodeOf(Status status);

} // namespace sfx
