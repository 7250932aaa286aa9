// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/pe/resourcetree.h"

#include <algorithm>

namespace pe {

namespace {

char16_t upperCased(char16_t letter)
{
    const auto isBetween = [letter](int first, int last) {
        return letter >= first && letter <= last;
    };
    if (isBetween('a', 'z') || (isBetween(0xe0, 0xfe) && letter != 0xf7)
        || (isBetween(0x3b1, 0x3cb) && letter != 0x3c2) || isBetween(0x430, 0x44f)) {
        return static_cast<char16_t>(letter - 0x20);
    }
    if (isBetween(0x450, 0x45f)) {
        return static_cast<char16_t>(letter - 0x50);
    }
    if (letter == 0xff) {
        return 0x178;
    }
    // Latin Extended-A: pairs of a capital and its small letter.
    const bool oddIsSmall = isBetween(0x100, 0x12f) || isBetween(0x132, 0x137)
        || isBetween(0x14a, 0x177);
    const bool evenIsSmall = isBetween(0x139, 0x148) || isBetween(0x179, 0x17e);
    if ((oddIsSmall && letter % 2 == 1) || (evenIsSmall && letter % 2 == 0)) {
        return static_cast<char16_t>(letter - 1);
    }
    return letter;
}

} // namespace

std::u16string upperCased(std::u16string_view name)
{
    std::u16string capitals(name);
    std::transform(capitals.begin(), capitals.end(), capitals.begin(),
                   [](char16_t letter) { return upperCased(letter); });
    return capitals;
}

bool sortsBefore(const ResourceKey &left, const ResourceKey &right)
{
    if (left.name.has_value() != right.name.has_value()) {
        return left.name.has_value();
    }
    if (!left.name) {
        return left.id < right.id;
    }
    return upperCased(*left.name) < upperCased(*right.name);
}

const ResourceEntry *findEntry(const ResourceDirectory &directory, const ResourceKey &key)
{
    // Not a binary search: real files are not always sorted.
    const auto found
        = std::find_if(directory.entries.begin(), directory.entries.end(), [&](const auto &entry) {
              return !sortsBefore(entry.key, key) && !sortsBefore(key, entry.key);
          });
    return found == directory.entries.end() ? nullptr : &*found;
}

ResourceEntry *findEntry(ResourceDirectory &directory, const ResourceKey &key)
{
    return const_cast<ResourceEntry *>(
        findEntry(static_cast<const ResourceDirectory &>(directory), key));
}

const ResourceData *firstData(const ResourceEntry &entry)
{
    const ResourceEntry *current = &entry;
    while (current->directory) {
        if (current->directory->entries.empty()) {
            return nullptr;
        }
        current = &current->directory->entries.front();
    }
    return &current->data;
}

Result<Bytes> readResource(const File &file, const PeHeaders &headers, const ResourceData &data,
                           std::uint32_t maxSize)
{
    return readResourceStart(file, headers, data, maxSize, data.size);
}

Result<Bytes> readResourceStart(const File &file, const PeHeaders &headers,
                                const ResourceData &data, std::uint32_t maxSize,
                                std::uint32_t length)
{
    const auto offset = headers.offsetOf(data.rva);
    const auto section = headers.sectionOf(data.rva);
    if (!offset || data.size > maxSize
        || !fits(*offset, data.size,
                 std::min(headers.sections()[*section].rawEnd(), file.size()))) {
        return Error{ErrorKind::Damaged, "a resource lies outside the file"};
    }
    return file.readAt(*offset, std::size_t{std::min(data.size, length)});
}

} // namespace pe
