// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/status.h"
#include "helpers/self-extractor/base/text.h"
#include "helpers/self-extractor/exitcodes.h"

#include <cstdint>

namespace sfx {

/// Why nothing was started: what was being done, and what the system said to it, read at once.
struct Failure
{
    ExitCode code = ExitCode::Damaged;
    unsigned long systemError = 0;  ///< of GetLastError(); 0: the system was not asked
    std::uint64_t missingBytes = 0; ///< room that is missing on the disk; 0: not known
    Text subject;                   ///< the file it is about; may be empty
};

/// The exit code that stands for a status; not for Ok.
ExitCode exitCodeOf(Status status);

} // namespace sfx
