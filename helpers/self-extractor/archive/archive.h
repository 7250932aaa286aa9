// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/archive/headermemory.h"
#include "helpers/self-extractor/base/bytesource.h"
#include "helpers/self-extractor/base/status.h"
#include "helpers/self-extractor/base/text.h"
#include "helpers/self-extractor/decoding/codergraph.h"

#include "7z.h"

namespace sfx {

// One file or folder of an archive.
struct Entry
{
    const char16_t *path
        = u"";                // components joined by `/`; stored in the `path` of Archive::entry()
    std::size_t pathSize = 0; // in UTF-16 units
    std::uint64_t size = 0;   // in bytes; 0 for folders
    bool isFolder = false;
    bool hasModified = false;
    std::uint64_t modified = 0;   // in 100 ns since 1601, UTC (Windows' FILETIME)
    std::uint32_t attributes = 0; // Windows' read-only, hidden, system and archive bits only
};

// The table of contents of a 7z archive inside a larger file.
class Archive
{
public:
    // Largest header, packed or unpacked, in bytes. A hundred thousand files need about 20 MB.
    static constexpr std::size_t maxHeaderSize = 64u << 20;
    // Maximum size of all parsed tables together, in bytes.
    static constexpr std::size_t headerBudget = 256u << 20;

    explicit Archive(ByteSource &source);
    Archive(const Archive &) = delete;
    Archive &operator=(const Archive &) = delete;
    ~Archive();

    // Reads the header of the archive that begins at `offset` and checks its CRCs. Bytes after the
    // archive are ignored. Call it once.
    Status open(std::uint64_t offset);

    std::uint32_t entryCount() const { return m_tables.NumFiles; }
    // Fills in an entry. UnsafeName: the path leads out of the folder or is impossible on Windows.
    // Unsupported: the entry is a Unix link or a device.
    Status entry(std::uint32_t index, Entry &entry) { return this->entry(index, entry, m_path); }
    // The same, with a path buffer of the caller; several threads may call it at the same time.
    Status entry(std::uint32_t index, Entry &entry, Array<char16_t> &path) const;

    // Describes how a solid block is decoded. Returns the errors of readCoderGraph().
    Status coderGraph(std::uint32_t solidBlock, CoderGraph &graph) const;
    // 7-Zip's own tables.
    const CSzArEx &tables() const { return m_tables; }
    // Offset in the source that the positions of packed streams are relative to.
    std::uint64_t packBase() const { return m_offset + m_tables.dataPos; }

private:
    ByteSource &m_source;
    HeaderMemory m_memory;
    CSzArEx m_tables{};
    std::uint64_t m_offset = 0;
    Array<char16_t> m_path;
};

} // namespace sfx
