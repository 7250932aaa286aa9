// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>

namespace fast {

// The properties of a 7z header, with the names of 7-Zip's document.
enum Property : std::uint8_t {
    End = 0x00,
    Header = 0x01,
    MainStreamsInfo = 0x04,
    FilesInfo = 0x05,
    PackInfo = 0x06,
    UnpackInfo = 0x07,
    SubStreamsInfo = 0x08,
    Size = 0x09,
    Crc = 0x0a,
    Folder = 0x0b,
    CodersUnpackSize = 0x0c,
    NumUnpackStream = 0x0d,
    EmptyStream = 0x0e,
    EmptyFile = 0x0f,
    Names = 0x11,
    MTime = 0x14,
    WinAttributes = 0x15,
    EncodedHeader = 0x17,
};

constexpr std::uint8_t allAreDefined = 1;
constexpr std::uint8_t isHere = 0; // not in another stream

} // namespace fast
