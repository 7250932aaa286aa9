// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/core/archive.h"

namespace sfx {

struct FolderPlan;

/// What can be decoded without the rest of the archive: a folder (7-Zip's word for a group of files
/// that was packed as one stream), or a stretch of one that begins where LZMA2 starts afresh. The
/// parts of a folder follow each other without a gap. Sizes and places are in bytes.
struct Part
{
    enum class Kind : std::uint8_t {
        Folder,
        Block,         ///< of LZMA2
        FilteredBlock, ///< of LZMA2, with the filter for x86 after it (see seam.h)
    };

    std::uint32_t folder = 0;
    Kind kind = Kind::Folder;
    std::uint8_t decoder = 0;    ///< the LZMA2 coder of a block, as an index
    std::uint64_t packBegin = 0; ///< of a block, in the folder's only packed stream
    std::uint64_t packSize = 0;
    std::uint64_t unpackBegin = 0; ///< in what the folder unpacks to
    std::uint64_t unpackSize = 0;
    bool isLast = true; ///< of its folder

    bool hasSeamBefore() const { return kind == Kind::FilteredBlock && unpackBegin != 0; }
    bool hasSeamBehind() const { return kind == Kind::FilteredBlock && !isLast; }
};

/// A stretch of what a folder unpacks to, in bytes.
struct Range
{
    std::uint32_t folder = 0;
    std::uint64_t begin = 0;
    std::uint64_t end = 0;
};

/// What a part unpacks, but for what lies in seams.
Range bodyOf(const Part &part);
/// What lies in the seam before a part.
Range seamBefore(const Part &part);

/// The parts of an archive that have content, in its order.
class Parts
{
public:
    /// To be called once. `splitsFolders`: false leaves folders whole. To find the stretches, the
    /// headers of LZMA2's chunks are read (six bytes in 64 KiB or less), and no further than it takes
    /// to see that there are none. What is wrong with them is left for the decoder to say. Damaged,
    /// Unsupported: a folder's description is wrong, or beyond this module.
    Status find(const Archive &archive, bool splitsFolders);

    std::size_t size() const { return m_size; }
    const Part &operator[](std::size_t index) const { return m_parts[index]; }
    /// What the decoders of the most demanding part take as windows.
    std::uint64_t largestWindow() const { return m_largestWindow; }

private:
    Status add(const Part &part, std::uint64_t window);
    Status addFolder(const Archive &archive, std::uint32_t folder, bool splits);
    Status addBlocks(const FolderPlan &plan, Part whole);

    Array<Part> m_parts; // with room for more than m_size
    std::size_t m_size = 0;
    std::uint64_t m_largestWindow = 0;
};

/// The content of a file that lies in a range; all of it, most of the time.
struct FilePiece
{
    std::uint32_t file = 0;   ///< index of the entry
    std::uint64_t offset = 0; ///< in the file
    std::uint64_t size = 0;   ///< never 0
    std::uint64_t fileSize = 0;

    bool isWholeFile() const { return size == fileSize; }
};

/// Goes through the files of a range in the order of their content.
class FilePieces
{
public:
    FilePieces(const Archive &archive, const Range &range);

    /// False: that was the last one.
    bool next(FilePiece &piece);

private:
    const CSzArEx &m_tables;
    const Range m_range;
    const std::uint64_t m_base; // what 7-Zip's positions count up to the folder
    std::uint32_t m_next;
};

} // namespace sfx
