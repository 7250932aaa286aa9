// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/pe/peheaders.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace pe {

// Resource types (WinUser.h: RT_ICON, RT_RCDATA, RT_GROUP_ICON, RT_VERSION,
// RT_MANIFEST).
constexpr std::uint16_t iconType = 3;
constexpr std::uint16_t rcDataType = 10;
constexpr std::uint16_t groupIconType = 14;
constexpr std::uint16_t versionType = 16;
constexpr std::uint16_t manifestType = 24;

// The key of a directory entry: a 16-bit id, or a name in capitals.
struct ResourceKey
{
    std::optional<std::u16string> name; // nothing: the key is the id
    std::uint32_t id = 0;
    bool operator==(const ResourceKey &) const = default;
};

// One resource's data entry.
struct ResourceData
{
    std::uint32_t rva = 0; // not used while newContent is set
    std::uint32_t size = 0;
    std::uint32_t codePage = 0;
    std::uint32_t reserved = 0;
    std::optional<Bytes> newContent; // content that is not in the file yet
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

// One table: first the named entries, sorted by name, then the entries with ids, sorted by id.
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

// The resource directory of a program, without the resources' content.
struct ResourceTree
{
    ResourceDirectory root;
    std::uint32_t rootRva = 0;
    std::uint64_t rootOffset = 0; // in the file
    std::size_t section = 0;      // index of the section that holds the tables
};

// Reads the directory. Returns nothing if the program has none. Fails on loops, on tables outside the
// section, on more than three levels and on absurdly many entries. Does not check where the content
// lies: in packed programs it exists only in memory.
Result<std::optional<ResourceTree>> readResourceTree(const File &file, const PeHeaders &headers);

// The content of one resource. Fails if the file does not contain all of it or if it is larger than
// `maxSize`.
Result<Bytes> readResource(const File &file, const PeHeaders &headers, const ResourceData &data,
                           std::uint32_t maxSize);
// The same, but reads only the first `length` bytes.
Result<Bytes> readResourceStart(const File &file, const PeHeaders &headers,
                                const ResourceData &data, std::uint32_t maxSize,
                                std::uint32_t length);

// True if `left` comes first in the order that the loader's binary search needs.
bool sortsBefore(const ResourceKey &left, const ResourceKey &right);

// The entry with this key, or null.
ResourceEntry *findEntry(ResourceDirectory &directory, const ResourceKey &key);
const ResourceEntry *findEntry(const ResourceDirectory &directory, const ResourceKey &key);

// The data of an entry, in its first language if there are several. Null if it has none.
const ResourceData *firstData(const ResourceEntry &entry);

// Adds the entry at its place in the order, after entries with the same key.
void insertEntry(ResourceDirectory &directory, ResourceEntry entry);
// Removes all entries with the key. Returns false if there is none.
bool removeEntry(ResourceDirectory &directory, const ResourceKey &key);
// The subdirectory with the key; makes it if there is none.
ResourceDirectory &directoryOf(ResourceDirectory &parent, const ResourceKey &key);

// Puts a resource in. It replaces one of the same type, name and language (a LANGID; 0 is neutral).
// New names are stored in capitals, as Windows looks for them.
void setResource(ResourceTree &tree, const ResourceKey &type, const ResourceKey &name,
                 std::uint16_t language, Bytes content);
// Removes a resource, and the directories that it leaves empty. Returns false if it is not there.
bool removeResource(ResourceTree &tree, const ResourceKey &type, const ResourceKey &name,
                    std::uint16_t language);

// The name in capitals, as Windows changes resource names. Knows Latin, Greek and Cyrillic letters.
std::u16string upperCased(std::u16string_view name);

} // namespace pe
