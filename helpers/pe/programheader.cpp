// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/pe/programheader.h"

#include <cstdio>

namespace pe {

namespace {

constexpr std::size_t dosHeaderSize = 64;

// The format of a file that is no PE file.
Result<ProgramHeader::Format> olderFormatOf(const File &file)
{
    if (file.size() < 2) {
        return ProgramHeader::Format::Unknown;
    }
    const auto signature = file.readAt(0, std::size_t{2});
    if (signature.hasError()) {
        return signature.error();
    }
    if (signature.value()[0] != 'M' || signature.value()[1] != 'Z') {
        return ProgramHeader::Format::Unknown;
    }
    if (file.size() < dosHeaderSize) {
        return ProgramHeader::Format::Dos;
    }
    const auto dos = file.readAt(0, dosHeaderSize);
    if (dos.hasError()) {
        return dos.error();
    }
    const std::uint32_t offset = read32(dos.value(), 60);
    if (offset == 0 || !fits(offset, 2, file.size())) {
        return ProgramHeader::Format::Dos;
    }
    const auto second = file.readAt(offset, std::size_t{2});
    if (second.hasError()) {
        return second.error();
    }
    const std::string letters(second.value().begin(), second.value().end());
    return letters == "NE" || letters == "LE" || letters == "LX" ? ProgramHeader::Format::SixteenBit
                                                                 : ProgramHeader::Format::Dos;
}

std::optional<std::uint32_t> clrFlagsOf(const File &file, const PeHeaders &headers)
{
    constexpr std::size_t flagsPosition = 16; // in the CLI header
    const DataDirectory clr = headers.directory(Directory::Clr);
    const auto offset = headers.offsetOf(clr.address);
    if (clr.address == 0 || clr.size < flagsPosition + 4 || !offset
        || !fits(*offset, flagsPosition + 4, file.size())) {
        return std::nullopt;
    }
    const auto header = file.readAt(*offset, flagsPosition + 4);
    return header.hasError() ? std::nullopt : std::optional(read32(header.value(), flagsPosition));
}

} // namespace

Result<ProgramHeader> programHeaderOf(const File &file)
{
    ProgramHeader header;
    const auto read = PeHeaders::read(file);
    if (read.hasError() && read.error().kind != ErrorKind::NotPe) {
        return read.error();
    }
    if (read.hasError()) {
        const auto format = olderFormatOf(file);
        if (format.hasError()) {
            return format.error();
        }
        header.format = format.value();
        return header;
    }
    const PeHeaders &headers = read.value();
    header.format = ProgramHeader::Format::Pe;
    header.machine = headers.machine();
    header.subsystem = headers.subsystem();
    header.characteristics = headers.characteristics();
    header.clrFlags = clrFlagsOf(file, headers);
    return header;
}

std::string machineName(std::uint16_t machine)
{
    switch (machine) {
    case machineX64:
        return "x64";
    case machineX86:
        return "x86";
    case machineArm64:
        return "ARM64";
    case machineArm:
        return "ARM";
    default:
        break;
    }
    char number[8];
    std::snprintf(number, sizeof number, "0x%x", static_cast<unsigned>(machine));
    return number;
}

std::string subsystemName(std::uint16_t subsystem)
{
    switch (subsystem) {
    case subsystemWindows:
        return "windows";
    case subsystemConsole:
        return "console";
    default:
        return std::to_string(subsystem);
    }
}

} // namespace pe
