// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/pe/resourcelayout.h"

#include <algorithm>

namespace pe {

namespace {

constexpr std::uint32_t highBit = 0x80000000U;

// Gives out free ranges: always the lowest one that is large enough.
class Allocator
{
public:
    Allocator(std::vector<ResourceRange> taken, const LayoutRoom &room)
    {
        std::sort(taken.begin(), taken.end(),
                  [](const auto &left, const auto &right) { return left.begin < right.begin; });
        std::uint32_t end = 0;
        for (const ResourceRange &range : taken) {
            if (range.begin > end && end < room.length) {
                m_free.push_back({end, std::min(range.begin, room.length)});
            }
            end = std::max(end, range.end);
        }
        if (end < room.maxLength) {
            m_free.push_back({end, room.maxLength});
        }
    }

    std::optional<std::uint32_t> take(std::uint32_t size, std::uint32_t alignment)
    {
        for (ResourceRange &range : m_free) {
            const std::uint64_t begin = alignUp(range.begin, alignment);
            if (fits(begin, size, range.end)) {
                range.begin = static_cast<std::uint32_t>(begin + size);
                m_usedEnd = std::max(m_usedEnd, range.begin);
                return static_cast<std::uint32_t>(begin);
            }
        }
        return std::nullopt;
    }

    std::uint32_t usedEnd() const { return m_usedEnd; }

private:
    std::vector<ResourceRange> m_free;
    std::uint32_t m_usedEnd = 0;
};

class LayoutMaker
{
public:
    LayoutMaker(const LayoutRoom &room, Allocator allocator)
        : m_room(room)
        , m_allocator(std::move(allocator))
    {
    }

    // Tables come first: they fit into small gaps, and content needs the large ones.
    std::optional<Layout> make(ResourceDirectory &root)
    {
        if (!placeTables(root) || !placeContent(root)) {
            return std::nullopt;
        }
        root.position = 0;
        writeTables(root);
        m_layout.usedEnd = std::max(m_allocator.usedEnd(), root.tableSize());
        return std::move(m_layout);
    }

private:
    bool place(std::uint32_t &position, std::uint32_t size, std::uint32_t alignment)
    {
        const auto found = m_allocator.take(size, alignment);
        position = found.value_or(0);
        return found.has_value();
    }

    // Places all tables, names and data entries below a directory, but not its own table.
    bool placeTables(ResourceDirectory &directory)
    {
        return std::all_of(directory.entries.begin(), directory.entries.end(),
                           [this](ResourceEntry &entry) { return placeEntry(entry); });
    }

    bool placeEntry(ResourceEntry &entry)
    {
        if (entry.key.name
            && !place(entry.namePosition,
                      static_cast<std::uint32_t>(2 + 2 * entry.key.name->size()), 2)) {
            return false;
        }
        if (!entry.directory) {
            return place(entry.dataEntryPosition, 16, 4);
        }
        ResourceDirectory &child = *entry.directory;
        return placeTables(child) && place(child.position, child.tableSize(), 4);
    }

    bool placeContent(ResourceDirectory &directory)
    {
        return std::all_of(directory.entries.begin(), directory.entries.end(),
                           [this](ResourceEntry &entry) {
                               return entry.directory ? placeContent(*entry.directory)
                                                      : placeContent(entry.data);
                           });
    }

    bool placeContent(ResourceData &data)
    {
        if (!data.newContent) {
            return true;
        }
        std::uint32_t position = 0;
        const bool placed = place(position, data.size, 8);
        data.rva = m_room.rootRva + position;
        return placed;
    }

    void writeTables(ResourceDirectory &directory)
    {
        write(directory.position, serialise(directory));
        for (ResourceEntry &entry : directory.entries) {
            if (entry.key.name) {
                write(entry.namePosition, serialise(*entry.key.name));
            }
            if (entry.directory) {
                writeTables(*entry.directory);
            } else {
                writeData(entry);
            }
        }
    }

    void writeData(ResourceEntry &entry)
    {
        Bytes bytes(16);
        write32(bytes, 0, entry.data.rva);
        write32(bytes, 4, entry.data.size);
        write32(bytes, 8, entry.data.codePage);
        write32(bytes, 12, entry.data.reserved);
        write(entry.dataEntryPosition, std::move(bytes));
        if (entry.data.newContent) {
            write(entry.data.rva - m_room.rootRva, std::move(*entry.data.newContent));
            entry.data.newContent.reset();
        }
    }

    static Bytes serialise(const std::u16string &name)
    {
        Bytes bytes(2 + 2 * name.size());
        write16(bytes, 0, static_cast<std::uint16_t>(name.size()));
        for (std::size_t i = 0; i < name.size(); ++i) {
            write16(bytes, 2 + 2 * i, name[i]);
        }
        return bytes;
    }

    static Bytes serialise(const ResourceDirectory &directory)
    {
        Bytes bytes = directory.header;
        bytes.resize(directory.tableSize());
        std::uint16_t names = 0;
        for (std::size_t i = 0; i < directory.entries.size(); ++i) {
            const ResourceEntry &entry = directory.entries[i];
            names = static_cast<std::uint16_t>(names + (entry.key.name ? 1 : 0));
            write32(bytes, 16 + 8 * i,
                    entry.key.name ? entry.namePosition | highBit : entry.key.id);
            write32(bytes, 20 + 8 * i,
                    entry.directory ? entry.directory->position | highBit
                                    : entry.dataEntryPosition);
        }
        write16(bytes, 12, names);
        write16(bytes, 14, static_cast<std::uint16_t>(directory.entries.size() - names));
        return bytes;
    }

    void write(std::uint32_t position, Bytes bytes)
    {
        m_layout.patches.push_back({m_room.rootOffset + position, std::move(bytes)});
    }

    const LayoutRoom &m_room;
    Allocator m_allocator;
    Layout m_layout;
};

void collectDataRanges(const ResourceDirectory &directory, std::uint64_t begin, std::uint64_t end,
                       std::vector<ResourceRange> &ranges)
{
    for (const ResourceEntry &entry : directory.entries) {
        if (entry.directory) {
            collectDataRanges(*entry.directory, begin, end, ranges);
            continue;
        }
        const std::uint64_t first = std::max<std::uint64_t>(entry.data.rva, begin);
        const std::uint64_t last
            = std::min<std::uint64_t>(std::uint64_t{entry.data.rva} + entry.data.size, end);
        if (!entry.data.newContent && first < last) {
            ranges.push_back({static_cast<std::uint32_t>(first - begin),
                              static_cast<std::uint32_t>(last - begin)});
        }
    }
}

} // namespace

std::vector<ResourceRange> dataRanges(const ResourceTree &tree, std::uint32_t rva,
                                      std::uint32_t length)
{
    std::vector<ResourceRange> ranges;
    collectDataRanges(tree.root, rva, std::uint64_t{rva} + length, ranges);
    return ranges;
}

std::optional<Layout> layOut(ResourceTree &tree, const LayoutRoom &room)
{
    const std::uint32_t rootEnd = tree.root.tableSize();
    const bool rootCollides
        = std::any_of(room.taken.begin(), room.taken.end(), [&](const auto &range) {
              return range.begin < rootEnd && range.begin < range.end;
          });
    if (rootCollides || rootEnd > room.maxLength) {
        return std::nullopt;
    }
    auto taken = room.taken;
    taken.push_back({0, rootEnd});
    LayoutMaker maker(room, Allocator(std::move(taken), room));
    return maker.make(tree.root);
}

} // namespace pe
