// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/core/bytesource.h"

namespace sfx {

/// Finds the places in LZMA2 data where the dictionary is emptied: what follows is decoded without
/// what was before. An encoder with several threads makes such places at regular distances. The data
/// is a row of chunks (xz, doc/xz-file-format.txt, and 7-Zip, C/Lzma2Dec.c): a control byte, the
/// size of the unpacked chunk, and in compressed ones that of the packed chunk and perhaps a byte of
/// properties.
class Lzma2Blocks
{
public:
    struct Place
    {
        std::uint64_t packed = 0;   ///< bytes of packed data before it
        std::uint64_t unpacked = 0; ///< bytes that those unpack to
    };

    /// `offset` and `size` say where the data lies in `source`.
    Lzma2Blocks(ByteSource &source, std::uint64_t offset, std::uint64_t size,
                std::uint64_t dictionarySize);

    /// The next place, the very beginning left out. False: there is none; or the data is damaged; or
    /// more has been passed over than an encoder has in a block, so that there will be none.
    bool next(Place &place);

private:
    bool readHeader();
    bool passChunk();

    ByteSource &m_source;
    const std::uint64_t m_offset;
    const std::uint64_t m_size;
    const std::uint64_t m_longestBlock;
    Place m_place;
    std::uint64_t m_blockBegin = 0;
    std::uint8_t m_header[6] = {}; // of the chunk at m_place
};

} // namespace sfx
