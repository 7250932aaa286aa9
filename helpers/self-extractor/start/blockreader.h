// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/bytesource.h"
#include "helpers/self-extractor/base/status.h"
#include "helpers/self-extractor/base/text.h"

namespace sfx {

// The content of the configuration block between the module and the archive.
//
// The block is UTF-8 text: the line `;!@Install@!UTF-8!`, lines `Key="value"`, and the line
// `;!@InstallEnd@!`. Unknown keys are ignored; a known key may occur once.
struct ConfigBlock
{
    Text title;            // Title: title of the message boxes; may be empty
    Text runProgram;       // RunProgram: a file name; empty if it is not used
    Text folderName;       // InstallPath: the part after `%%T\`, one safe name; the same
    bool silent = false;   // Silent="1": never show a message box
    bool progress = false; // Progress="yes": show progress if unpacking takes a while
};

// Which values are used. One that the settings replace may be anything, and may be missing.
struct BlockUse
{
    bool runProgram = true;
    bool installPath = true;
};

// Longest block that is read, including both marker lines, in bytes.
constexpr std::size_t maxBlockSize = 64 * 1024;

// Reads the block that starts at `data`. There may be other bytes after it. `blockSize` becomes its
// length, including the line end after the end marker. Damaged: there is no block, or it is not as
// described above.
Status parseConfigBlock(const char *data, std::size_t size, ConfigBlock &block,
                        std::size_t &blockSize, const BlockUse &use = {});

// Reads the block that begins at `imageEnd`, the end of the executable image. `archiveOffset` becomes
// the offset of the first byte after the block.
Status readConfigBlock(ByteSource &source, std::uint64_t imageEnd, const BlockUse &use,
                       ConfigBlock &block, std::uint64_t &archiveOffset);

} // namespace sfx
