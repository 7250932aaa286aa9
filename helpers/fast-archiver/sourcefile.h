// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/pe/nativepath.h"

#include <cstdint>
#include <string>

namespace fast {

// What a file contains, as far as packing depends on it.
enum class Content {
    ProgramX86, // a program or library for 32-bit x86 processors
    ProgramX64, // the same for 64 bits
    OtherProgram,
    Other,
};

// One file or folder of the folder to pack.
struct SourceFile
{
    std::u16string path;  // from the folder to pack, with `/` between its names
    pe::NativePath place; // the same for the system
    bool isFolder = false;
    std::uint64_t size = 0;       // in bytes; 0 for folders
    std::uint64_t modified = 0;   // in 100 ns since 1601, UTC
    std::uint32_t attributes = 0; // as 7-Zip stores them
    bool isLink = false;          // a symbolic link that is stored as one; not on Windows
    std::string linkTarget;       // of such a link; that is then the file's content
    Content content = Content::Other;
};

} // namespace fast
