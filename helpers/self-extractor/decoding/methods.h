// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>

// 7-Zip's numbers of the methods (7-Zip, DOC/Methods.txt).
namespace sfx::method {

constexpr std::uint32_t Copy = 0;
constexpr std::uint32_t Delta = 3;
constexpr std::uint32_t Arm64 = 0xa;
constexpr std::uint32_t RiscV = 0xb;
constexpr std::uint32_t Lzma2 = 0x21;
constexpr std::uint32_t Lzma = 0x030101;
constexpr std::uint32_t X86 = 0x03030103;
constexpr std::uint32_t Bcj2 = 0x0303011b;
constexpr std::uint32_t Ppc = 0x03030205;
constexpr std::uint32_t Ia64 = 0x03030401;
constexpr std::uint32_t Arm = 0x03030501;
constexpr std::uint32_t ArmThumb = 0x03030701;
constexpr std::uint32_t Sparc = 0x03030805;
constexpr std::uint32_t Zstd = 0x04f71101;

} // namespace sfx::method
