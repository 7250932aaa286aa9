// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/archive/archive.h"
#include "helpers/self-extractor/start/pathindex.h"

namespace sfx {

// An entry of a folder on the disk.
struct FoundEntry
{
    bool isFolder = false;
    bool isLink = false;        // of any kind; it is not followed
    std::uint64_t size = 0;     // in bytes
    std::uint64_t modified = 0; // in 100 ns since 1601
};

// What an entry of a kept folder is, beside what the archive says.
enum class Match : std::uint8_t {
    Right,
    Wrong,    // to be replaced
    ByContent // right, if its content has the archive's CRC
};

// An entry as it must be in a kept folder.
struct KeptEntry
{
    std::uint64_t size;
    std::uint64_t modified; // 0: the archive does not say it
    std::uint32_t crc;
    bool isFolder;
    bool isRight;           // found on the disk as it must be
    std::uint32_t children; // the archive's entries that lie directly in this folder
};

// `comparesContents`: size and time are not enough. They never are if the archive says no time.
Match matchEntry(const KeptEntry &kept, const FoundEntry &found, bool comparesContents);

// All entries of an archive, to be compared with a kept folder.
class KeptTable
{
public:
    // Reads the archive. The paths begin with `folderName`, the application's folder. Returns the
    // errors of Archive::entry(), or NoMemory.
    Status read(Archive &archive, const char16_t *folderName);

    // The hash that the paths in the application's folder begin with.
    std::uint64_t beginning() const { return m_beginning; }
    // The archive's entries that lie directly in the application's folder, and those whose folder is
    // no entry.
    std::uint32_t children() const { return m_children; }
    // The entry with this path, or nullptr if the archive has none.
    KeptEntry *find(std::uint64_t hash);
    // Nothing has been found. Call it before another comparison.
    void forget();
    // Entries that have not been found as they must be, and the size of their files together.
    std::uint32_t missing() const;
    std::uint64_t missingBytes() const;
    // Sets an element for each entry: whether it has been found as it must be. Returns false if there
    // is not enough memory.
    [[nodiscard]] bool listRight(Array<bool> &right) const;

    // The hashes of all paths, and of the application's folder at the end.
    const Array<std::uint64_t> &hashes() const { return m_index.hashes(); }
    // The longest path of the archive, in UTF-16 units.
    std::size_t longestPath() const { return m_longestPath; }
    // The latest time of a file; 0 if the archive says none.
    std::uint64_t newest() const { return m_newest; }

private:
    // Returns false if there is not enough memory.
    [[nodiscard]] bool build(Array<std::uint64_t> hashes, const Array<std::uint64_t> &folders);

    PathIndex m_index;
    Array<KeptEntry> m_entries;
    std::uint64_t m_beginning = 0;
    std::uint32_t m_children = 0;
    std::uint64_t m_newest = 0;
    std::size_t m_longestPath = 0;
};

} // namespace sfx
