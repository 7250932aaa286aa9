// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/pe/icongroups.h"

#include <algorithm>
#include <set>

namespace pe {

namespace {

using IdSet = std::set<std::uint32_t>;

ResourceKey idKey(std::uint32_t id)
{
    return {std::nullopt, id};
}

// A group that cannot be read, as in some packed programs, counts as empty.
void collectImageIds(const ResourceEntry &entry, const File &file, const PeHeaders &headers,
                     IdSet &ids)
{
    if (entry.directory) {
        for (const ResourceEntry &child : entry.directory->entries) {
            collectImageIds(child, file, headers, ids);
        }
        return;
    }
    if (entry.data.newContent) {
        return;
    }
    const auto group = readResource(file, headers, entry.data, maxIconGroupSize);
    if (!group.hasError()) {
        const auto found = imageIdsOfGroup(group.value());
        ids.insert(found.begin(), found.end());
    }
}

void removeImages(ResourceTree &tree, const IdSet &ids)
{
    ResourceEntry *images = findEntry(tree.root, idKey(iconType));
    if (images == nullptr || !images->directory) {
        return;
    }
    ResourceDirectory &directory = *images->directory;
    std::erase_if(directory.entries, [&](const ResourceEntry &entry) {
        return !entry.key.name && ids.contains(entry.key.id);
    });
    if (directory.entries.empty()) {
        removeEntry(tree.root, idKey(iconType));
    }
}

Result<std::vector<std::uint16_t>> freeImageIds(const ResourceTree &tree, IdSet taken,
                                                std::size_t count)
{
    if (const auto *images = findEntry(tree.root, idKey(iconType)); images && images->directory) {
        for (const ResourceEntry &entry : images->directory->entries) {
            taken.insert(entry.key.id);
        }
    }
    std::vector<std::uint16_t> free;
    for (std::uint32_t id = 1; id <= 0xffff && free.size() < count; ++id) {
        if (!taken.contains(id)) {
            free.push_back(static_cast<std::uint16_t>(id));
        }
    }
    if (free.size() < count) {
        return Error{ErrorKind::NoRoom, "the program has no free icon ids"};
    }
    return free;
}

} // namespace

bool removeIconGroups(ResourceTree &tree, const File &file, const PeHeaders &headers)
{
    const ResourceEntry *groups = findEntry(tree.root, idKey(groupIconType));
    if (groups == nullptr) {
        return false;
    }
    IdSet ids;
    collectImageIds(*groups, file, headers, ids);
    removeEntry(tree.root, idKey(groupIconType));
    removeImages(tree, ids);
    return true;
}

Result<Done> setIconGroup(ResourceTree &tree, const File &file, const PeHeaders &headers,
                          const ResourceKey &key, const std::vector<IconImage> &images)
{
    ResourceDirectory &groups = directoryOf(tree.root, idKey(groupIconType));
    IdSet replaced;
    if (const ResourceEntry *old = findEntry(groups, key)) {
        collectImageIds(*old, file, headers, replaced);
        removeEntry(groups, key);
    }
    IdSet surviving;
    for (const ResourceEntry &group : groups.entries) {
        collectImageIds(group, file, headers, surviving);
    }
    std::erase_if(replaced, [&](std::uint32_t id) { return surviving.contains(id); });
    removeImages(tree, replaced);

    const auto ids = freeImageIds(tree, std::move(surviving), images.size());
    if (ids.hasError()) {
        return ids.error();
    }
    Bytes group = iconGroupOf(images, ids.value());
    setResource(tree, idKey(groupIconType), key, 0, std::move(group));
    for (std::size_t i = 0; i < images.size(); ++i) {
        const ByteView data = images[i].data;
        setResource(tree, idKey(iconType), idKey(ids.value()[i]), 0,
                    Bytes(data.begin(), data.end()));
    }
    return Done{};
}

} // namespace pe
