// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/pe/peheaders.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace pe {

// Resource types (WinUser.h: RT_ICON, RT_GROUP_ICON).
constexpr std::uint16_t iconType = 3;
constexpr std::uint16_t groupIconType = 14;

// How a directory entry is looked up: by a 16-bit id, or by a name in capitals.
struct ResourceKey
{
    std::optional<std::u16string> name; // nothing: the id counts
    std::uint32_t id = 0;
};

// One resource's data entry.
struct ResourceData
{
    std::uint32_t rva = 0; // not used while newContent is set
    std::uint32_t size = 0;
    std::uint32_t codePage = 0;
    std::uint32_t reserved = 0;
    std::optional<Bytes> newContent; // bytes that the file does not hold yet
};

struct ResourceDirectory;

// A directory entry: a subdirectory or data. layOut() sets the positions, which count from the root's
// first byte.
struct ResourceEntry
{
    ResourceKey key;
    std::unique_ptr<ResourceDirectory> directory; // null: the entry is `data`
    ResourceData data;
    std::uint32_t namePosition = 0;
    std::uint32_t dataEntryPosition = 0;
};

// One table: named entries first, in the order of their names, then ids in rising order.
struct ResourceDirectory
{
    Bytes header; // the 12 bytes before the counts: characteristics, time stamp, version
    std::vector<ResourceEntry> entries;
    std::uint32_t position = 0; // set by layOut()

    std::uint32_t tableSize() const { return static_cast<std::uint32_t>(16 + 8 * entries.size()); }
};

// A half-open range that counts from the root's first byte.
struct ResourceRange
{
    std::uint32_t begin = 0;
    std::uint32_t end = 0;
};

// The resource directory of a program, with nothing of the resources' content.
struct ResourceTree
{
    ResourceDirectory root;
    std::uint32_t rootRva = 0;
    std::uint64_t rootOffset = 0; // in the file
    std::size_t section = 0;      // index of the section that holds the tables
};

// Reads the directory; nothing when the program has none. Loops, tables outside the section, more
// than three levels and absurd counts are errors. Where data lie is not checked: packed programs
// have resources that exist only in memory.
Result<std::optional<ResourceTree>> readResourceTree(const File &file, const PeHeaders &headers);

// The content of one resource; an error when the file does not hold all of it or it exceeds
// `maxSize`.
Result<Bytes> readResource(const File &file, const PeHeaders &headers, const ResourceData &data,
                           std::uint32_t maxSize);
// The same, but reads no more than the first `length` bytes.
Result<Bytes> readResourceStart(const File &file, const PeHeaders &headers,
                                const ResourceData &data, std::uint32_t maxSize,
                                std::uint32_t length);

// The order that the loader's binary search needs.
bool sortsBefore(const ResourceKey &left, const ResourceKey &right);

// The entry of this key; null when there is none.
ResourceEntry *findEntry(ResourceDirectory &directory, const ResourceKey &key);
const ResourceEntry *findEntry(const ResourceDirectory &directory, const ResourceKey &key);

// The first data below an entry: of its first language where there are several. Null when empty.
const ResourceData *firstData(const ResourceEntry &entry);

// Capitals as Windows makes them for resource names: Latin, Greek and Cyrillic letters.
std::u16string upperCased(std::u16string_view name);

} // namespace pe
