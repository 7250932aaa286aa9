// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/pe/resourcetree.h"

#include <algorithm>
#include <set>

namespace pe {

namespace {

constexpr std::uint32_t highBit = 0x80000000U;
// Type, name and language. The loader knows no more levels.
constexpr int maxLevels = 3;
// Real programs have far fewer. The limit keeps the tree of a hostile file within a few megabytes.
constexpr std::size_t maxEntries = 50000;
constexpr std::uint32_t dataEntrySize = 16;

Error damaged(const char *what)
{
    return {ErrorKind::Damaged, what};
}

// Reads the tables of one tree. The section ends `m_length` bytes after the root's first byte.
class TreeReader
{
public:
    TreeReader(const File &file, std::uint64_t rootOffset, std::uint64_t length)
        : m_file(file)
        , m_rootOffset(rootOffset)
        , m_length(length)
    {
    }

    Result<Done> readDirectory(ResourceDirectory &directory, std::uint32_t position, int level)
    {
        if (level > maxLevels) {
            return damaged("the resource directory has too many levels");
        }
        if (!m_visited.insert(position).second) {
            return damaged("the resource directory has a loop");
        }
        auto header = bytesAt(position, 16);
        if (header.hasError()) {
            return header.error();
        }
        const std::size_t names = read16(header.value(), 12);
        const std::size_t count = names + read16(header.value(), 14);
        m_entryCount += count;
        if (m_entryCount > maxEntries) {
            return damaged("the resource directory has too many entries");
        }
        const auto table = bytesAt(std::uint64_t{position} + 16, 8 * count);
        if (table.hasError()) {
            return table.error();
        }
        header.value().resize(12);
        directory.header = std::move(header.value());
        directory.entries.resize(count);
        for (std::size_t i = 0; i < count; ++i) {
            const auto row = ByteView(table.value()).subspan(8 * i, 8);
            if (auto read = readEntry(directory.entries[i], row, level); read.hasError()) {
                return read;
            }
        }
        return Done{};
    }

private:
    Result<Done> readEntry(ResourceEntry &entry, ByteView row, int level)
    {
        const std::uint32_t name = read32(row, 0);
        if (auto read = readKey(entry, name); read.hasError()) {
            return read;
        }
        const std::uint32_t target = read32(row, 4);
        if ((target & highBit) != 0) {
            entry.directory = std::make_unique<ResourceDirectory>();
            return readDirectory(*entry.directory, target & ~highBit, level + 1);
        }
        const auto bytes = bytesAt(target, dataEntrySize);
        if (bytes.hasError()) {
            return bytes.error();
        }
        entry.data.rva = read32(bytes.value(), 0);
        entry.data.size = read32(bytes.value(), 4);
        entry.data.codePage = read32(bytes.value(), 8);
        entry.data.reserved = read32(bytes.value(), 12);
        return Done{};
    }

    Result<Done> readKey(ResourceEntry &entry, std::uint32_t name)
    {
        if ((name & highBit) == 0) {
            entry.key.id = name;
            return Done{};
        }
        const std::uint32_t position = name & ~highBit;
        const auto length = bytesAt(position, 2);
        if (length.hasError()) {
            return length.error();
        }
        const std::size_t letters = read16(length.value(), 0);
        m_letterCount += letters;
        if (m_letterCount > maxLetters) {
            return damaged("the resource names are too long");
        }
        const auto text = bytesAt(std::uint64_t{position} + 2, 2 * letters);
        if (text.hasError()) {
            return text.error();
        }
        entry.key.name.emplace(letters, u'\0');
        for (std::size_t i = 0; i < letters; ++i) {
            (*entry.key.name)[i] = static_cast<char16_t>(read16(text.value(), 2 * i));
        }
        return Done{};
    }

    Result<Bytes> bytesAt(std::uint64_t position, std::size_t length) const
    {
        if (!fits(position, length, m_length)) {
            return damaged("the resource directory points outside its section");
        }
        return m_file.readAt(m_rootOffset + position, length);
    }

    static constexpr std::size_t maxLetters = 2000000;

    const File &m_file;
    std::uint64_t m_rootOffset;
    std::uint64_t m_length;
    std::set<std::uint32_t> m_visited;
    std::size_t m_entryCount = 0;
    std::size_t m_letterCount = 0;
};

} // namespace

Result<std::optional<ResourceTree>> readResourceTree(const File &file, const PeHeaders &headers)
{
    const DataDirectory place = headers.directory(Directory::Resource);
    if (place.address == 0) {
        return std::optional<ResourceTree>();
    }
    const auto section = headers.sectionOf(place.address);
    const auto offset = headers.offsetOf(place.address);
    if (!section || !offset || *offset >= file.size()) {
        return damaged("the resource directory lies outside the file");
    }
    ResourceTree tree;
    tree.rootRva = place.address;
    tree.rootOffset = *offset;
    tree.section = *section;
    const std::uint64_t end = std::min(headers.sections()[*section].rawEnd(), file.size());
    TreeReader reader(file, *offset, end - *offset);
    if (const auto read = reader.readDirectory(tree.root, 0, 1); read.hasError()) {
        return read.error();
    }
    return std::optional<ResourceTree>(std::move(tree));
}

} // namespace pe
