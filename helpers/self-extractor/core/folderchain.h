// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/core/stream.h"

#include "7z.h"

namespace sfx {

/// Builds the stages that decode one folder (7-Zip's word for a group of files that was packed as
/// one stream) of an archive. `packBase` is the offset in `source` that the folder's packed streams
/// are counted from. Unsupported: a method or a wiring that this module does not have.
Status openFolder(const CSzAr &streams, std::uint32_t folderIndex, ByteSource &source,
                  std::uint64_t packBase, Owned<Stream> &result);

} // namespace sfx
