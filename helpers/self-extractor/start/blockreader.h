// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/bytesource.h"
#include "helpers/self-extractor/base/status.h"
#include "helpers/self-extractor/base/text.h"

namespace sfx {

/// What the configuration block between the module and the archive says.
///
/// The block is UTF-8 text: the line `;!@Install@!UTF-8!`, lines `Key="value"`, and the line
/// `;!@InstallEnd@!`. Nothing is escaped: a value runs from the first to the last quote of its
/// line. Unknown keys are passed over, a known key may come once.
struct ConfigBlock
{
    Text title;            ///< Title: heads the message boxes; may be empty
    Text runProgram;       ///< RunProgram: a file name, never empty
    Text folderName;       ///< the folder behind `%%T\` of InstallPath: one safe name
    bool silent = false;   ///< Silent="1": show no box, whatever happens
    bool progress = false; ///< Progress="yes": show how far unpacking is, if it takes a while
};

/// Longest block that is read, both marker lines included, in bytes.
constexpr std::size_t maxBlockSize = 64 * 1024;

/// Reads a block that starts at `data`. `size` may reach beyond it; `blockSize` becomes the length
/// including the line end behind the end marker. Damaged: no block, or one that is not as above.
Status parseConfigBlock(const char *data, std::size_t size, ConfigBlock &block,
                        std::size_t &blockSize);

/// Finds and reads the block behind the executable image. `archiveOffset` becomes the offset of the
/// first byte behind it.
Status readConfigBlock(ByteSource &source, ConfigBlock &block, std::uint64_t &archiveOffset);

} // namespace sfx
