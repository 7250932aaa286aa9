// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/pe/peheaders.h"

#include <optional>
#include <string>

namespace pe {

// What the first bytes of a program say about where it can run. The numbers are those of the PE format
// ("Machine Types", "Windows Subsystem", "Characteristics"); they count only for the format Pe.
struct ProgramHeader
{
    enum class Format {
        Pe,
        SixteenBit, // NE, LE or LX: a program for 16-bit Windows or OS/2, or a driver of that time
        Dos,
        Unknown, // no program of any of these kinds
    };

    Format format = Format::Unknown;
    std::uint16_t machine = 0;
    std::uint16_t subsystem = 0;
    std::uint16_t characteristics = 0;
    std::optional<std::uint32_t> clrFlags; // of .NET Framework programs (ECMA-335, II.25.3.3.1)
};

// Fails with Damaged if the headers of a PE file contradict the file, and with CannotRead.
Result<ProgramHeader> programHeaderOf(const File &file);

// Machine types.
constexpr std::uint16_t machineX86 = 0x14c;
constexpr std::uint16_t machineArm = 0x1c4;
constexpr std::uint16_t machineX64 = 0x8664;
constexpr std::uint16_t machineArm64 = 0xaa64;

// Subsystems.
constexpr std::uint16_t subsystemWindows = 2;
constexpr std::uint16_t subsystemConsole = 3;

// "x64", "x86", "ARM64", "ARM", or a number like "0x1c0".
std::string machineName(std::uint16_t machine);

// "windows", "console", or a number.
std::string subsystemName(std::uint16_t subsystem);

} // namespace pe
