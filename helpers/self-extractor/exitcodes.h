// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>

namespace sfx {

// The exit codes of the self-extractor's own failures. Any other code is the program's own, all 32
// bits of it. The upper half is "KP", which other programs are unlikely to use. The low byte is
// unique too, for systems that pass on only that byte. A retired number is never used again.
enum class ExitCode : std::uint32_t {
    Damaged = 0x4b5000c9,        // 201: the file is damaged or incomplete
    Unsupported = 0x4b5000ca,    // 202: the archive needs something this module does not have
    UnsafeName = 0x4b5000cb,     // 203: an entry's name is not allowed, or two names collide
    NoMemory = 0x4b5000cc,       // 204: not enough memory
    ReadFailed = 0x4b5000cd,     // 205: the executable's own file cannot be read
    NoFolder = 0x4b5000ce,       // 206: the private temporary folder cannot be created
    WriteFailed = 0x4b5000cf,    // 207: a file cannot be written
    DiskFull = 0x4b5000d0,       // 208: not enough space on the disk
    ProgramMissing = 0x4b5000d1, // 209: the archive does not contain the program to run
    StartFailed = 0x4b5000d2,    // 210: the program cannot be started
    Cancelled = 0x4b5000d3,      // 211: the user cancelled, or did not allow more rights
    Interrupted = 0x4b5000d4,    // 212: Ctrl+C or closing of the console before the program ran
};

} // namespace sfx
