// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/fast-archiver/failure.h"
#include "helpers/fast-archiver/progress.h"
#include "helpers/fast-archiver/solidblocks.h"
#include "helpers/pe/file.h"

namespace fast {

// The files of the folder to pack.
struct Source
{
    pe::NativePath folder; // ends with a separator
    std::vector<SourceFile> files;
};

// Reads the files of one block as one stream of bytes, and filters them. The arguments must live as
// long as the reader.
class BlockReader
{
public:
    BlockReader(const Source &source, const SolidBlock &block, Progress &progress);

    // The next bytes. None means that all files were read. Fails if a file cannot be read, or does
    // not have the size that it had when the folder was listed.
    Outcome<pe::ByteView> next();

    // The check sums of the files' content, in the block's order.
    const std::vector<std::uint32_t> &checkSums() const { return m_checkSums; }

private:
    Outcome<Done> fill();
    Outcome<Done> openNext();
    Outcome<Done> read(std::size_t wanted);
    Outcome<Done> finishFile();
    const SourceFile &current() const { return m_source.files[m_block.files[m_position]]; }
    Failure changed() const;
    std::size_t convert(bool isEnd);

    const Source &m_source;
    const SolidBlock &m_block;
    Progress &m_progress;

    pe::File m_file;
    bool m_isOpen = false;
    std::size_t m_position = 0; // of the current file in the block
    std::uint64_t m_offset = 0; // in that file
    std::uint32_t m_checkSum = 0;
    std::vector<std::uint32_t> m_checkSums;

    pe::Bytes m_buffer;
    std::size_t m_used = 0;     // bytes in the buffer
    std::size_t m_returned = 0; // of these, how many next() has returned
    std::uint32_t m_filterPosition = 0;
    std::uint32_t m_filterState = 0;
};

} // namespace fast
