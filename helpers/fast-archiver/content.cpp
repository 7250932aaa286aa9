// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/fast-archiver/content.h"

#include <algorithm>
#include <string_view>

namespace fast {

namespace {

constexpr std::uint16_t peMachineX86 = 0x14c;
constexpr std::uint16_t peMachineX64 = 0x8664;
constexpr std::uint16_t elfMachineX86 = 3;
constexpr std::uint16_t elfMachineX64 = 62;

bool hasAt(pe::ByteView bytes, std::size_t offset, std::string_view text)
{
    return pe::fits(offset, text.size(), bytes.size())
        && std::equal(text.begin(), text.end(), bytes.begin() + static_cast<std::ptrdiff_t>(offset),
                      [](char one, std::uint8_t other) {
                          return static_cast<std::uint8_t>(one) == other;
                      });
}

Content programFor(bool isX86, bool isX64)
{
    return isX64 ? Content::ProgramX64 : isX86 ? Content::ProgramX86 : Content::OtherProgram;
}

} // namespace

Content contentOf(pe::ByteView start)
{
    using namespace std::string_view_literals;
    constexpr std::size_t peOffsetAt = 60;
    constexpr std::size_t elfMachineAt = 18;
    if (hasAt(start, 0, "MZ"sv) && start.size() >= peOffsetAt + 4) {
        const std::size_t header = pe::read32(start, peOffsetAt);
        if (hasAt(start, header, "PE\0\0"sv) && pe::fits(header, 6, start.size())) {
            const std::uint16_t machine = pe::read16(start, header + 4);
            return programFor(machine == peMachineX86, machine == peMachineX64);
        }
    }
    // The sixth byte of ELF files is 1 if their numbers are little-endian.
    if (hasAt(start, 0,
              "\x7f"
              "ELF"sv)
        && start.size() >= elfMachineAt + 2 && start[5] == 1) {
        const std::uint16_t machine = pe::read16(start, elfMachineAt);
        return programFor(machine == elfMachineX86, machine == elfMachineX64);
    }
    return Content::Other;
}

} // namespace fast
