// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>

namespace sfx {

// How a step of the self-extractor ended. After anything but Ok, nothing is started and nothing is
// left behind.
enum class Status : std::uint8_t {
    Ok,
    ReadFailed,  // the system could not read the executable's own file
    Damaged,     // image, block or archive are not what was packed, but truncated or altered
    Unsupported, // a well-formed archive that needs something this module does not have
    UnsafeName,  // an entry's name leads out of the folder, or cannot exist on Windows
    NoMemory,
    WriteFailed, // a file or folder could not be created; the sink knows the error
    DiskFull,
    Interrupted,    // by Ctrl+C, or because the console was closed
    ProgramMissing, // the archive does not contain the program to run
    Cancelled,      // by the user, in the progress window
};

} // namespace sfx
