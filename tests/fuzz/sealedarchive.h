// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

// Length of a 7z archive's start header.
constexpr std::size_t startHeaderSize = 32;

// Random bytes never have correct check sums, so this corrects those of an archive's start header
// and header. The header is the last part of the archive; it begins at the offset that the start
// header names. The archive has at least startHeaderSize bytes.
void sealArchive(std::span<std::uint8_t> archive);
